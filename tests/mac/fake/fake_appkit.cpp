// The C++ side of the files that are written in Objective-C++, which this machine cannot run: AppKit and
// Foundation as far as the other files see them.
#include <algorithm>
#include <list>

#include "platform/mac/appkit_alert.h"
#include "platform/mac/appkit_appearance.h"
#include "platform/mac/appkit_application.h"
#include "platform/mac/appkit_cursor.h"
#include "platform/mac/appkit_screens.h"
#include "platform/mac/appkit_workspace.h"
#include "platform/mac/foundation_process.h"
#include "tests/mac/fake/fake_object.h"
#include "tests/mac/fake/fake_windows.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle {
namespace mac_fake {
namespace {

struct Observer {
    std::string source;
    std::string name;
    std::function<void(std::optional<RunningApplication>)> posted;
};

struct AppKit {
    std::list<std::shared_ptr<Observer>> observers;
    std::map<StandardCursor, CursorObject> standard;
    std::function<void(const CursorObject&)> replacement;
    std::map<const void*, std::weak_ptr<const void>> cursors;
};

AppKit& appKit() {
    static auto* const it = new AppKit;
    return *it;
}

CursorObject newCursor(ProcessCursor content) {
    CursorObject object = std::make_shared<ProcessCursor>(std::move(content));
    appKit().cursors[object.get()] = object;
    return object;
}

const ProcessCursor& contentOf(const CursorObject& cursor) {
    if (!cursor) misuse("AppKit was handed no cursor");
    return *static_cast<const ProcessCursor*>(cursor.get());
}

CursorReading readingOf(const ProcessCursor& cursor) {
    return {cursor.image ? CfRef<CGImageRef>::adopt(newImage(*cursor.image)) : CfRef<CGImageRef>(),
            cursor.size, cursor.hotspot};
}

}  // namespace

/// Stands for the observation of a key, in the list of observers.
constexpr const char* kEffectiveAppearance = "effectiveAppearance";

void changeEffectiveAppearance() { postNotification("application", kEffectiveAppearance); }

void forgetAppKit() { appKit() = {}; }

ProcessCursor processCursor(const void* object) { return *static_cast<const ProcessCursor*>(object); }

void setFromElsewhere(const void* object) { sendSet(appKit().cursors.at(object).lock()); }

void postNotification(const std::string& source, const std::string& name,
                      const std::optional<RunningApplication>& application) {
    const auto now = appKit().observers;
    for (const auto& observer : now)
        if (observer->source == source && observer->name == name) observer->posted(application);
}
std::size_t notificationObservers() { return appKit().observers.size(); }

}  // namespace mac_fake

using namespace mac_fake;

CursorObject makeCursorObject(CGImageRef image, Size size, Point hotspot) {
    return newCursor({image ? pixelsOf(image) : std::nullopt, size, hotspot});
}
CursorObject standardCursorObject(StandardCursor which) {
    auto& object = appKit().standard[which];
    if (!object) object = newCursor({});
    return object;
}
void sendSet(const CursorObject& cursor) {
    contentOf(cursor);
    if (appKit().replacement)
        appKit().replacement(cursor);
    else
        sendOriginalSet(cursor);
}
void sendOriginalSet(const CursorObject& cursor) {
    contentOf(cursor);
    world().currentCursors.push_back(cursor.get());
}
bool exchangeCursorSet(std::function<void(const CursorObject& receiver)> replacement) {
    if (!world().canExchangeSet) return false;
    ++world().exchanges;
    appKit().replacement = std::move(replacement);
    return true;
}
std::optional<CursorReading> readCurrentSystemCursor() {
    ++world().systemCursorReadings;
    if (!world().systemCursor) return std::nullopt;
    auto reading = readingOf(*world().systemCursor);
    if (world().whileSystemCursorIsRead) world().whileSystemCursorIsRead();
    return reading;
}
std::vector<std::pair<std::string, CursorReading>> readStandardCursors() {
    std::vector<std::pair<std::string, CursorReading>> readings;
    for (const auto& [name, cursor] : world().standardCursors) readings.emplace_back(name, readingOf(cursor));
    return readings;
}

std::vector<ScreenReading> readScreens() { return world().screens; }
Point readMouseLocation() { return world().mouse; }

std::optional<RunningApplication> readFrontmostApplication() { return world().frontmost; }
std::vector<std::int32_t> readRunningCopies(const std::string& bundleIdentifier) {
    return world().runningCopies[bundleIdentifier];
}
Subscription observeNotification(NotificationSource source, const std::string& name,
                                 std::function<void(std::optional<RunningApplication>)> posted) {
    const auto observer = std::make_shared<Observer>(Observer{
        source == NotificationSource::workspace ? "workspace" : "application", name, std::move(posted)});
    appKit().observers.push_back(observer);
    return Subscription([observer] { appKit().observers.remove(observer); });
}

long runNativeAlert(const Alert& alert) {
    world().alerts.push_back(alert);
    return world().answerAlert ? world().answerAlert(alert) : 1000;
}

void setNativeActivationPolicy(ActivationPolicy policy) {
    world().applicationCalls.push_back("policy " + std::to_string(static_cast<int>(policy)));
}
void activateNatively() {
    world().applicationCalls.emplace_back("activate");
    world().windowCalls.emplace_back("activate");
    programBecameActive();
}
void openNatively(const std::string& url) { world().applicationCalls.push_back("open " + url); }
void notifyNatively(const std::string& title, const std::string& text) {
    world().applicationCalls.push_back("notify " + title + ": " + text);
}
void terminateNatively() { world().applicationCalls.emplace_back("terminate"); }

DesktopLook readDesktopLook() { return world().look; }
Subscription observeEffectiveAppearance(std::function<void()> changed) {
    return observeNotification(NotificationSource::application, kEffectiveAppearance,
                               [changed = std::move(changed)](const auto&) { changed(); });
}

void inAutoreleasePool(const std::function<void()>& work) {
    ++world().pools;
    ++world().openPools;
    work();
    --world().openPools;
}
Subscription beginProcessActivity(const std::string& reason) {
    world().activities.push_back(reason);
    return Subscription([] { ++world().activitiesEnded; });
}
UserDirectories readUserDirectories() { return world().directories; }

}  // namespace pintle
