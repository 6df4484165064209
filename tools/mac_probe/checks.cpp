#include "tools/mac_probe/checks.h"

#include <ApplicationServices/ApplicationServices.h>
#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apply/cursor_identifiers.h"
#include "platform/mac/appkit_workspace.h"
#include "platform/mac/cf_notifications.h"
#include "platform/mac/mac_accessibility.h"
#include "platform/mac/mac_displays.h"
#include "platform/mac/mac_image_service.h"
#include "platform/mac/mac_key_value_store.h"
#include "platform/mac/mac_login_item_service.h"
#include "platform/mac/mac_main_queue.h"
#include "platform/mac/mac_overlay_surfaces.h"
#include "platform/mac/mac_pointer.h"
#include "platform/mac/mac_property_list_coder.h"
#include "platform/mac/mac_window_list.h"
#include "platform/mac/mac_window_server.h"
#include "platform/mac/mac_workspace.h"
#include "tools/mac_probe/kept_registrations.h"

namespace pintle {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr const char* kArrow = "com.apple.coregraphics.Arrow";
/// Above it menus open.
constexpr int kPopUpMenuLevel = 101;

void runLoopFor(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, Boolean{0}); }

Bitmap gradient(int width, int height) {
    return *Bitmap::create(width, height, [](std::span<std::uint8_t> out) {
        for (std::size_t i = 0; i < out.size(); i += 4) {
            const auto alpha = static_cast<std::uint8_t>(255 - i % 128);
            out[i] = static_cast<std::uint8_t>(i % (alpha + 1U));
            out[i + 1] = 0;
            out[i + 2] = alpha;
            out[i + 3] = alpha;
        }
    });
}

int largestDifference(const Bitmap& one, const Bitmap& other) {
    if (one.width() != other.width() || one.height() != other.height()) return 256;
    int largest = 0;
    for (std::size_t i = 0; i < one.bytes().size(); ++i)
        largest = std::max(largest, std::abs(int{one.bytes()[i]} - int{other.bytes()[i]}));
    return largest;
}

json answerOf(const RegistrationAnswer& answer) { return answer ? json(*answer) : json("skipped"); }

json described(const RegisteredCursor& cursor) {
    json images = json::array();
    for (const Bitmap& image : cursor.images) images.push_back({image.width(), image.height()});
    return {{"size", {cursor.size.width, cursor.size.height}},
            {"hotspot", {cursor.hotspot.x, cursor.hotspot.y}},
            {"frames", cursor.frameCount},
            {"seconds_per_frame", cursor.frameDuration},
            {"images", images}};
}

json compared(const RegisteredCursor& before, const RegisteredCursor& after) {
    int difference = before.images.size() == after.images.size() ? 0 : 256;
    for (std::size_t i = 0; i < std::min(before.images.size(), after.images.size()); ++i)
        difference = std::max(difference, largestDifference(before.images[i], after.images[i]));
    return {{"same_size", before.size == after.size},
            {"same_hotspot", before.hotspot == after.hotspot},
            {"same_frames", before.frameCount == after.frameCount},
            {"same_duration", before.frameDuration == after.frameDuration},
            {"largest_difference_of_a_pixel", difference}};
}

json privateFunctions(const std::string&) {
    json found;
    const std::array<std::pair<const char*, void*>, 2> libraries = {
        std::pair{"CoreGraphics",
                  ::dlopen("/System/Library/Frameworks/CoreGraphics.framework/CoreGraphics", RTLD_NOW)},
        std::pair{"ApplicationServices",
                  ::dlopen("/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices",
                           RTLD_NOW)}};
    for (const char* name : {"CGSMainConnectionID", "CGSRegisterCursorWithImages", "CoreCursorUnregisterAll",
                             "CGSCopyRegisteredCursorImages", "CGSSetConnectionProperty",
                             "CGSIsScreenWatcherPresent", "CGSCurrentCursorSeed"}) {
        found[name] = nullptr;
        for (const auto& [library, handle] : libraries)
            if (found[name].is_null() && handle && ::dlsym(handle, name)) found[name] = library;
    }
    return found;
}

/// Runs a check that withdraws every registration, and afterwards gives a Pintle that runs its theme back.
json withThemesKept(WindowServer& server, const std::function<json()>& check) {
    const auto running = readRunningCopies("com.pintle.app");
    std::optional<KeptRegistrations> kept;
    if (!running.empty()) {
        std::vector<std::string> identifiers;
        for (const auto& row : cursorIdentifiers()) identifiers.emplace_back(row.identifier);
        kept.emplace(server, identifiers);
    }
    json report = check();
    if (kept) report["identifiers_given_back_to_the_running_program"] = kept->restore();
    return report;
}

/// Takes the arrow, registers it as it is, looks again, and withdraws everything.
json arrowRoundTrip(WindowServer& windowServer) {
    auto* const server = &windowServer;
    if (!server->provides(WindowServerFunction::mainConnectionID) ||
        !server->provides(WindowServerFunction::copyRegisteredCursorImages))
        return {{"possible", false}};
    const auto connection = server->mainConnectionID();
    const auto before = server->copyRegisteredCursorImages(connection, kArrow);
    json report = {
        {"connection", connection}, {"copy_error", before.error}, {"before", described(before.cursor)}};
    if (before.error != 0 || before.cursor.images.empty() ||
        !server->provides(WindowServerFunction::registerCursorWithImages))
        return report;
    report["register_error"] =
        answerOf(server->registerCursorWithImages(connection, before.cursor, RegistrationPurpose::original));
    const auto registered = server->copyRegisteredCursorImages(connection, kArrow);
    report["after_registering"] = compared(before.cursor, registered.cursor);
    if (server->provides(WindowServerFunction::coreCursorUnregisterAll)) {
        report["unregister_error"] = server->coreCursorUnregisterAll(connection);
        const auto withdrawn = server->copyRegisteredCursorImages(connection, kArrow);
        report["after_unregistering"] = compared(before.cursor, withdrawn.cursor);
        report["after_unregistering"]["copy_error"] = withdrawn.error;
    }
    return report;
}

/// Another picture under the arrow's name, and away with it again.
json arrowReplacement(WindowServer& windowServer) {
    auto* const server = &windowServer;
    for (const auto function :
         {WindowServerFunction::mainConnectionID, WindowServerFunction::registerCursorWithImages,
          WindowServerFunction::copyRegisteredCursorImages, WindowServerFunction::coreCursorUnregisterAll})
        if (!server->provides(function)) return {{"possible", false}};
    const auto connection = server->mainConnectionID();
    const RegisteredCursor strip{kArrow, {gradient(24, 72)}, {24, 24}, {4, 4}, 3, 0.1};
    json report = {{"register_error", answerOf(server->registerCursorWithImages(
                                          connection, strip, RegistrationPurpose::theme))}};
    const auto registered = server->copyRegisteredCursorImages(connection, kArrow);
    report["registered"] = described(registered.cursor);
    report["comparison"] = compared(strip, registered.cursor);
    report["unregister_error"] = server->coreCursorUnregisterAll(connection);
    return report;
}

Check onWindowServer(json (*check)(WindowServer&)) {
    return [check](const std::string&) {
        const auto server = makeMacWindowServer();
        return withThemesKept(*server, [&] { return check(*server); });
    };
}

json pointer(const std::string&) {
    const auto pointer = makeMacPointer();
    const auto display = CGMainDisplayID();
    json report;
    report["sets_cursor_in_background"] = pointer->setsCursorInBackground();
    report["hide_error"] = CGDisplayHideCursor(display);
    report["show_error"] = CGDisplayShowCursor(display);
    const auto seed = pointer->currentCursorSeed();
    report["seed"] = seed ? json(*seed) : json();
    const auto watched = pointer->isScreenWatcherPresent();
    report["screen_watcher"] = watched ? json(*watched) : json();
    const auto current = pointer->currentSystemCursor();
    report["current_cursor"] = current ? json({{"size", {current->image.width(), current->image.height()}},
                                               {"hotspot", {current->hotspot.x, current->hotspot.y}}})
                                       : json();
    for (const auto& [name, image] : pointer->standardCursors())
        report["standard_cursors"].push_back({{"name", name}, {"size", {image.width(), image.height()}}});
    return report;
}

json windows(const std::string&) {
    json report;
    for (const WindowInfo& window : makeMacWindowList()->onScreenWindows())
        report.push_back({{"owner", window.ownerName},
                          {"layer", window.layer},
                          {"bounds",
                           {window.bounds.origin.x, window.bounds.origin.y, window.bounds.size.width,
                            window.bounds.size.height}}});
    return report;
}

/// Whether an overlay's window stands above menus and above every other window, by the desktop's own list.
json overlayAboveMenus(const std::string&) {
    const auto list = makeMacWindowList();
    const auto before = list->onScreenWindows();
    const auto surfaces = makeMacOverlaySurfaces();
    const auto surface = surfaces->create(CGMainDisplayID(), {37, 41});
    if (!surface) return {{"made", false}};
    surface->setImage(gradient(37, 41));
    surface->setOrigin({11, 13});
    surface->setAlpha(1);
    surface->orderFront();
    runLoopFor(0.5);
    const auto after = list->onScreenWindows();
    json report = {{"made", true},
                   {"visible", surface->isVisible()},
                   {"windows_before", before.size()},
                   {"windows_after", after.size()}};
    const auto ours = std::find_if(after.begin(), after.end(), [](const WindowInfo& window) {
        return window.bounds.size == Size{37, 41};
    });
    report["listed"] = ours != after.end();
    if (ours == after.end()) return report;
    report["is_first"] = ours == after.begin();
    report["layer"] = ours->layer;
    report["above_menus"] = ours->layer > kPopUpMenuLevel;
    report["origin"] = {ours->bounds.origin.x, ours->bounds.origin.y};
    int highest = 0;
    for (const WindowInfo& window : before) highest = std::max(highest, window.layer);
    report["highest_layer_of_others"] = highest;
    return report;
}

json images(const std::string&) {
    const auto service = makeMacImageService();
    const Bitmap image = gradient(64, 64);
    const auto file = service->encodePng(image);
    json report = {{"encoded", file.has_value()}};
    if (!file) return report;
    const auto back = service->decodePng(*file);
    report["largest_difference_of_a_pixel"] = back ? json(largestDifference(image, *back)) : json();
    std::size_t accepted = 0;
    for (std::size_t length = 0; length < file->size(); ++length)
        if (service->decodePng(std::span(*file).first(length))) ++accepted;
    report["truncated_files_accepted"] = accepted;
    return report;
}

json propertyLists(const std::string&) {
    const PropertyValue tree = PropertyDictionary{
        {"flag", true},
        {"integer", 1},
        {"whole real", 1.0},
        {"real", 0.1},
        {"text", "\xC3\xA4 <&>"},
        {"data", PropertyData{0, 255}},
        {"date", PropertyDate{700000000}},
        {"list", PropertyArray{1, "two", PropertyDictionary{}}},
    };
    const auto coder = makeMacPropertyListCoder();
    json report;
    for (const auto& [name, format] :
         {std::pair{"binary", PropertyListFormat::binary}, std::pair{"xml", PropertyListFormat::xml}}) {
        auto bytes = coder->encode(tree, format);
        report[name]["encoded"] = bytes.has_value();
        if (!bytes) continue;
        report[name]["comes_back"] = coder->decode(*bytes) == tree;
        std::size_t accepted = 0;
        for (std::size_t length = 0; length + 1 < bytes->size(); ++length)
            if (coder->decode(std::span(*bytes).first(length))) ++accepted;
        report[name]["truncated_lists_accepted"] = accepted;
        bytes->push_back('x');
        report[name]["accepts_something_after_it"] = coder->decode(*bytes).has_value();
    }
    return report;
}

json preferences(const std::string& program) {
    const std::string domain = "com.pintle.probe." + std::to_string(::getpid());
    json report;
    const auto store = makeMacKeyValueStore(domain);
    store->set("text", "value");
    store->set("flag", true);
    store->set("integer", 1);
    store->set("real", 1.0);
    const std::string find = "'" + program + "' --find " + domain + " text value";
    report["another_process_finds_it"] = std::system(find.c_str()) == 0;
    const auto other = makeMacKeyValueStore(domain);
    report["flag_stays_a_flag"] = other->object("flag") == PropertyValue(true);
    report["integer_stays_an_integer"] = other->object("integer") == PropertyValue(1);
    report["real_stays_a_real"] = other->object("real") == PropertyValue(1.0);
    int calls = 0;
    const Subscription observer = store->observe("text", [&] { ++calls; });
    store->removeDomain();
    report["removal_was_heard"] = calls == 1;
    report["gone"] = !other->object("text");
    report["another_process_finds_it_afterwards"] = std::system(find.c_str()) == 0;
    return report;
}

json notifications(const std::string& program) {
    const std::string name = "com.pintle.probe.notification." + std::to_string(::getpid());
    int received = 0;
    const Subscription observer = observeDistributed(name, [&] { ++received; });
    const auto start = std::chrono::steady_clock::now();
    const bool posted = std::system(("'" + program + "' --post " + name).c_str()) == 0;
    const auto waited = [&] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start);
    };
    while (received == 0 && waited() < 5s) runLoopFor(0.02);
    return {{"posted", posted},
            {"heard", received},
            {"milliseconds_from_start_of_the_process", waited().count()}};
}

json loginItem(const std::string&) {
    // Only asked: registering would change what starts with the desktop.
    return {{"status", static_cast<int>(makeMacLoginItemService()->status())}};
}

json accessibility(const std::string&) {
    const auto service = makeMacAccessibility();
    const auto role = service->roleAt({20, 10});
    return {{"trusted", service->isProcessTrusted()}, {"role_in_the_menu_bar", role ? json(*role) : json()}};
}

json desktop(const std::string&) {
    const auto displays = makeMacDisplays();
    json report = {{"main_display", displays->mainDisplayID()},
                   {"mouse", {displays->mouseLocation().x, displays->mouseLocation().y}}};
    for (const Screen& screen : displays->screens())
        report["screens"].push_back({{"frame",
                                      {screen.frame.origin.x, screen.frame.origin.y, screen.frame.size.width,
                                       screen.frame.size.height}},
                                     {"id", screen.id ? json(*screen.id) : json()}});
    const auto front = makeMacWorkspace()->frontmostApplication();
    report["frontmost"] = front ? json({{"name", front->name.value_or("")}, {"pid", front->pid}}) : json();
    return report;
}

/// A second of ticks at 120 a second, in the common modes of the main run loop.
json ticks(const std::string&) {
    const auto queue = makeMacMainQueue();
    constexpr auto kInterval = 8333333ns;
    std::vector<std::chrono::nanoseconds> at;
    const auto start = queue->now();
    Timer timer = queue->every(kInterval, [&] { at.push_back(queue->now() - start); });
    bool posted = false;
    queue->post([&] { posted = true; });
    while (queue->now() - start < 1s) runLoopFor(0.1);
    timer.end();
    std::chrono::nanoseconds latest{0};
    for (const auto& tick : at) latest = std::max(latest, tick % kInterval);
    return {{"posted_work_ran", posted},
            {"ticks_in_a_second", at.size()},
            {"latest_after_its_place_in_microseconds",
             std::chrono::duration_cast<std::chrono::microseconds>(latest).count()}};
}

}  // namespace

const std::map<std::string, Check>& probeChecks() {
    static const std::map<std::string, Check> checks = {
        {"accessibility", accessibility},
        {"arrow_replacement", onWindowServer(arrowReplacement)},
        {"arrow_round_trip", onWindowServer(arrowRoundTrip)},
        {"ticks", ticks},
        {"desktop", desktop},
        {"images", images},
        {"login_item", loginItem},
        {"notifications", notifications},
        {"overlay_above_menus", overlayAboveMenus},
        {"pointer", pointer},
        {"preferences", preferences},
        {"private_functions", privateFunctions},
        {"property_lists", propertyLists},
        {"windows", windows},
    };
    return checks;
}

void postForProbe(const std::string& name) { postDistributed(name); }

bool findForProbe(const std::string& domain, const std::string& key, const std::string& value) {
    return makeMacKeyValueStore(domain)->object(key) == PropertyValue(value);
}

}  // namespace pintle
