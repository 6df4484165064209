#include "platform/wayland/sway_events.h"

#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/wayland/local_socket.h"
#include "platform/wayland/sway_messages.h"

namespace pintle::wayland {
namespace {

using namespace sway;

/// On the main thread, for two messages that fit into any socket.
constexpr std::chrono::milliseconds kPatience{500};

std::optional<CompositorNews> newsOf(const Header& header, const std::string& body) {
    if (header.type == static_cast<std::uint32_t>(Event::output)) return CompositorNews::changedOutputs;
    if (header.type != static_cast<std::uint32_t>(Event::workspace)) return std::nullopt;
    const auto event = nlohmann::json::parse(body, nullptr, /*allow_exceptions=*/false);
    // When its configuration is loaded again, which makes every seat anew.
    if (textIn(event, "change") != "reload") return std::nullopt;
    return CompositorNews::forgotTheme;
}

class SwayEvents {
  public:
    SwayEvents(LocalSocket socket, std::function<void(CompositorNews)> handler)
        : socket_(std::move(socket)), handler_(std::move(handler)) {}

    /// In two messages, because versions that do not know one event refuse all of its message.
    bool ask() {
        for (const auto* const events : {R"(["workspace"])", R"(["output"])"})
            if (!socket_.send(message(Request::subscribe, events))) return false;
        return true;
    }
    void watch(const WatchReadable& watchReadable, const std::weak_ptr<SwayEvents>& self) {
        watch_ = watchReadable(socket_.descriptor(), [self] {
            if (const auto alive = self.lock()) alive->read();
        });
    }

  private:
    void read() {
        std::vector<CompositorNews> news;
        while (true) {
            const auto received = socket_.receiveNow();
            if (!received) watch_.end();
            if (!received || received.value().empty()) break;
            pending_ += received.value();
            if (takeMessages(news)) continue;
            watch_.end();
            break;
        }
        for (const auto each : news) handler_(each);
    }
    /// False when what arrived is no message.
    bool takeMessages(std::vector<CompositorNews>& news) {
        while (pending_.size() >= kHeaderBytes) {
            const auto header = headerOf(pending_);
            if (!header || header->length > kLargestAnswer) return false;
            if (pending_.size() < kHeaderBytes + header->length) return true;
            if (const auto each = newsOf(*header, pending_.substr(kHeaderBytes, header->length)))
                news.push_back(*each);
            pending_.erase(0, kHeaderBytes + header->length);
        }
        return true;
    }

    LocalSocket socket_;
    const std::function<void(CompositorNews)> handler_;
    std::string pending_;
    Subscription watch_;
};

}  // namespace

Subscription observeSway(const Environment& environment, const WatchReadable& watchReadable,
                         std::function<void(CompositorNews)> handler) {
    const auto path = socketOf(environment);
    if (path.empty()) return {};
    auto socket = LocalSocket::connect(path, kPatience);
    if (!socket) return {};
    auto events = std::make_shared<SwayEvents>(std::move(socket).value(), std::move(handler));
    if (!events->ask()) return {};
    events->watch(watchReadable, events);
    return Subscription([events]() mutable { events.reset(); });
}

}  // namespace pintle::wayland
