#include "platform/wayland/output_scales.h"

#include <poll.h>
#include <wayland-client.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>

namespace pintle::wayland {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience{1000};
/// From this version on an output says its scale.
constexpr std::uint32_t kOutputVersion = 2;
constexpr std::size_t kMostOutputs = 64;

struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
};
using Display = std::unique_ptr<wl_display, Disconnect>;

struct Output {
    wl_output* object = nullptr;
    int scale = 1;
};
using Outputs = std::vector<std::unique_ptr<Output>>;

constexpr wl_output_listener kOutputListener = {
    .geometry = [](void*, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                   const char*, const char*, std::int32_t) {},
    .mode = [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {},
    .done = [](void*, wl_output*) {},
    .scale = [](void* data, wl_output*, std::int32_t factor) { static_cast<Output*>(data)->scale = factor; },
    .name = [](void*, wl_output*, const char*) {},
    .description = [](void*, wl_output*, const char*) {},
};

constexpr wl_registry_listener kRegistryListener = {
    .global =
        [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
           std::uint32_t version) {
            auto& outputs = *static_cast<Outputs*>(data);
            if (std::string_view(interface) != wl_output_interface.name || version < kOutputVersion ||
                outputs.size() >= kMostOutputs)
                return;
            auto& output = *outputs.emplace_back(std::make_unique<Output>());
            output.object = static_cast<wl_output*>(
                wl_registry_bind(registry, name, &wl_output_interface, kOutputVersion));
            wl_output_add_listener(output.object, &kOutputListener, &output);
        },
    .global_remove = [](void*, wl_registry*, std::uint32_t) {},
};

constexpr wl_callback_listener kDoneListener = {
    .done = [](void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; },
};

/// Handles everything that the compositor says until it has answered. The library's own call would wait for
/// ever.
bool roundtrip(wl_display* display, Clock::time_point deadline) {
    bool done = false;
    auto* const callback = wl_display_sync(display);
    wl_callback_add_listener(callback, &kDoneListener, &done);
    bool good = true;
    while (good && !done) {
        if (wl_display_prepare_read(display) != 0) {
            good = wl_display_dispatch_pending(display) >= 0;
            continue;
        }
        wl_display_flush(display);
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd watched = {wl_display_get_fd(display), POLLIN, 0};
        if (left <= 0 || ::poll(&watched, 1, static_cast<int>(left)) <= 0) {
            wl_display_cancel_read(display);
            good = false;
        } else {
            good = wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
        }
    }
    wl_callback_destroy(callback);
    return done;
}

}  // namespace

std::vector<double> outputScales(const std::optional<std::string>& display) {
    const Display connection(wl_display_connect(display ? display->c_str() : nullptr));
    if (!connection) return {};
    const auto deadline = Clock::now() + kPatience;
    Outputs outputs;
    auto* const registry = wl_display_get_registry(connection.get());
    wl_registry_add_listener(registry, &kRegistryListener, &outputs);
    // The outputs, then what each says of itself.
    const bool answered = roundtrip(connection.get(), deadline) && roundtrip(connection.get(), deadline);
    std::vector<double> scales;
    for (const auto& output : outputs) {
        wl_output_destroy(output->object);
        scales.push_back(output->scale);
        if (output->scale == 2) scales.insert(scales.end(), {1.25, 1.5});
    }
    wl_registry_destroy(registry);
    if (!answered) scales.clear();
    return scales;
}

}  // namespace pintle::wayland
