// The desktop that the fake frameworks play: what a test puts on it before, and what was asked of it,
// afterwards. One at a time; main thread, except for the parts that the backends use from any thread.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/bitmap.h"
#include "base/property_value.h"
#include "platform/alerts.h"
#include "platform/appearance.h"
#include "platform/bundle.h"
#include "platform/mac/appkit_screens.h"
#include "platform/workspace.h"

namespace pintle::mac_fake {

/// One call of a private function that registers a cursor, as it arrived.
struct Registration {
    std::uint32_t connection = 0;
    std::string identifier;
    bool setGlobally = false;
    bool instantly = false;
    CGSize size{};
    CGPoint hotspot{};
    std::uint64_t frameCount = 0;
    double frameDuration = 0;
    /// Of each image; absent where the array held something else.
    std::vector<std::optional<Bitmap>> images;
    int seedBefore = -1;
};

/// What the window server hands out for one identifier.
struct ServedCursor {
    CGSize size{};
    CGPoint hotspot{};
    std::uint64_t frameCount = 1;
    double frameDuration = 0;
    std::vector<Bitmap> images;
    /// Puts a string among the images.
    bool withStranger = false;
    /// Hands out no array at all.
    bool withoutArray = false;
};

/// A cursor object of this process.
struct ProcessCursor {
    std::optional<Bitmap> image;
    Size size;
    Point hotspot;
    friend bool operator==(const ProcessCursor&, const ProcessCursor&) = default;
};

struct World {
    // Failures.
    /// The functions that answer null or an error, by name.
    std::set<std::string> failing;
    /// The number of the one call that fails among all that can, from 1; 0: none.
    int failAt = 0;
    /// Calls that could have failed.
    std::atomic<int> fallibleCalls{0};

    // Libraries.
    std::set<std::string> missingLibraries;
    /// By library and function.
    std::set<std::pair<std::string, std::string>> missingFunctions;
    /// "open PATH MODE" and "find LIBRARY FUNCTION", in order.
    std::vector<std::string> lookups;

    // The window server.
    std::uint32_t connection = 4711;
    std::vector<Registration> registrations;
    std::map<std::string, int> registerErrors;
    int unregisterError = 0;
    std::vector<std::uint32_t> unregistered;
    std::map<std::string, ServedCursor> served;
    int copyError = 1000;
    int cursorSeed = 5;
    bool screenWatched = false;
    /// connection, target, key, value
    std::vector<std::tuple<std::uint32_t, std::uint32_t, std::string, bool>> connectionProperties;
    int connectionPropertyError = 0;

    // Displays and windows.
    CGDirectDisplayID mainDisplay = 1;
    CGRect mainBounds{{0, 0}, {1440, 900}};
    /// "show ID" and "hide ID", in order.
    std::vector<std::string> pointerCalls;
    std::vector<std::pair<CGDisplayReconfigurationCallBack, void*>> displayCallbacks;
    /// Makes the list of windows; its reference goes to the caller. Null: the function answers null.
    std::function<CFArrayRef()> windows;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> windowQuestions;

    // Images: the types asked for, in order.
    std::vector<std::string> imageTypes;

    // Accessibility.
    bool trusted = true;
    std::function<std::optional<std::string>(float x, float y)> roleAt;
    /// The attribute is a number instead of a string.
    bool roleIsNumber = false;
    float messagingTimeout = 0;

    // Preferences by domain; the property tree that would be on disk.
    std::map<std::string, PropertyDictionary> preferences;
    /// "user/host" of every call.
    std::set<std::string> preferencePlaces;
    int preferenceSynchronizations = 0;

    /// What bytes that are neither of the two forms mean in the oldest one.
    std::optional<PropertyValue> oldPropertyList;

    // The bundle.
    std::optional<std::string> bundleIdentifier = "com.pintle.app";
    /// Info.plist; a value may be of any type.
    PropertyDictionary bundleInfo;
    std::optional<std::string> bundlePath = "/Applications/Pintle.app";
    std::optional<std::string> executablePath = "/Applications/Pintle.app/Contents/MacOS/Pintle";

    // Notifications between processes.
    struct DistributedPost {
        std::string name;
        bool hasObject = false;
        bool hasUserInfo = false;
        std::uint64_t options = 0;
        friend bool operator==(const DistributedPost&, const DistributedPost&) = default;
    };
    std::vector<DistributedPost> posts;

    // The log and the allocator.
    std::vector<std::pair<int, std::string>> systemLog;
    std::vector<std::string> logFormats;
    std::vector<std::pair<void*, std::size_t>> pressureReliefs;

    // AppKit's side, which is not compiled here.
    std::vector<ScreenReading> screens;
    Point mouse;
    std::optional<RunningApplication> frontmost;
    std::map<std::string, std::vector<std::int32_t>> runningCopies;
    std::optional<ProcessCursor> systemCursor;
    int systemCursorReadings = 0;
    /// Called once a reading has its picture: what another process does meanwhile.
    std::function<void()> whileSystemCursorIsRead;
    std::vector<std::pair<std::string, ProcessCursor>> standardCursors;
    /// What was made current by the desktop's own `set`, in order.
    std::vector<const void*> currentCursors;
    bool canExchangeSet = true;
    int exchanges = 0;
    DesktopLook look;
    std::vector<std::string> applicationCalls;
    /// What was asked of windows and of the program as their owner, in order.
    std::vector<std::string> windowCalls;
    bool programIsActive = false;
    bool programIsHidden = false;
    double titleBarHeight = 28;
    /// The button of a status item does not where the menu bar has no room for it.
    bool statusItemStandsInAWindow = true;
    /// The desktop shows no popover that it is asked to show.
    bool popoverRefuses = false;
    /// Autorelease pools that are open now, and all that ever were.
    int openPools = 0;
    int pools = 0;
    std::vector<std::string> activities;
    int activitiesEnded = 0;
    UserDirectories directories;
    /// Answers an alert with AppKit's response.
    std::vector<Alert> alerts;
    std::function<long(const Alert&)> answerAlert;
};

World& world();

/// Whether this call of a function that can fail fails now.
bool fails(const char* function);

/// Sends a distributed notification as another process does.
void postFromElsewhere(const std::string& name);
std::size_t distributedObservers();
/// Sends a notification of AppKit's centres.
void postNotification(const std::string& source, const std::string& name,
                      const std::optional<RunningApplication>& application = {});
std::size_t notificationObservers();
/// Light and dark change places, as AppKit reports it.
void changeEffectiveAppearance();
/// Calls every display callback.
void reconfigure(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags);
/// Runs the main run loop until something was done or the time is over; false when nothing was done.
bool runLoopOnce(double seconds);
/// The process cursor behind an object of the backend's.
ProcessCursor processCursor(const void* object);
/// Calls `set` on the cursor as foreign code of this process does.
void setFromElsewhere(const void* object);

/// A property tree as objects; the caller owns the reference.
CFTypeRef newProperty(const PropertyValue& value);
/// Absent for what is no property list.
std::optional<PropertyValue> propertyOf(CFTypeRef ref);
/// Where an image's pixels lie.
const std::uint8_t* providerBytes(CGImageRef image);
/// The pixels of an image as they would be drawn at its own size.
std::optional<Bitmap> pixelsOf(CGImageRef image);
CGImageRef newImage(const Bitmap& pixels);

/// Puts everything back to the start; every object must be gone.
void resetWorld();
/// What a test left behind: objects, observers, callbacks, timers. Empty when nothing.
std::string leftovers();

}  // namespace pintle::mac_fake
