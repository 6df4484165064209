// Core Foundation's services: property lists, preferences, the bundle, notifications between processes.
#include <CoreFoundation/CoreFoundation.h>
#include <malloc/malloc.h>
#include <os/log.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <list>
#include <mutex>

#include "platform/plist/plist_coder.h"
#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_values.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle::mac_fake {
namespace {

class Url : public Object {
  public:
    explicit Url(std::string content) : Object(Kind::url), path(std::move(content)) {}
    const std::string path;
};

class MainBundle : public Object {
  public:
    MainBundle() : Object(Kind::bundle, Life::immortal) {}
};

class Center : public Object {
  public:
    Center() : Object(Kind::notificationCenter, Life::immortal) {}
};

class FailureObject : public Object {
  public:
    FailureObject() : Object(Kind::error) {}
};

struct Observer {
    const void* observer;
    CFNotificationCallback callBack;
    std::string name;
};

std::list<Observer>& observers() {
    static auto* const all = new std::list<Observer>;
    return *all;
}

/// References that the frameworks hand out without giving them away: they live until the world ends.
std::vector<const void*>& handedOut() {
    static auto* const all = new std::vector<const void*>;
    return *all;
}

template <typename Ref>
Ref handOut(Ref ref) {
    handedOut().push_back(ref);
    return ref;
}

std::string noteDomain(CFStringRef application, CFStringRef user, CFStringRef host) {
    const auto part = [](CFStringRef ref) { return textOf(ref); };
    world().preferencePlaces.insert(part(user) + "/" + part(host));
    return part(application);
}

PropertyValue stored(CFTypeRef value, const char* function) {
    auto property = propertyOf(value);
    if (!property) misuse(std::string(function) + " was handed what no property list can hold");
    return std::move(*property);
}

}  // namespace

void releaseHandedOut() {
    for (const void* ref : handedOut()) release(ref, "the end of the world");
    handedOut().clear();
}

void postFromElsewhere(const std::string& name) {
    const CFStringRef text = newString(name);
    const auto now = observers();
    for (const auto& observer : now)
        if (observer.name == name)
            observer.callBack(CFNotificationCenterGetDistributedCenter(),
                              const_cast<void*>(observer.observer), text, nullptr, nullptr);
    CFRelease(text);
}
std::size_t distributedObservers() { return observers().size(); }

}  // namespace pintle::mac_fake

using namespace pintle;
using namespace pintle::mac_fake;

struct os_log_s {};

extern "C" {

const CFStringRef kCFPreferencesCurrentUser = constantString("current user");
const CFStringRef kCFPreferencesAnyHost = constantString("any host");

CFDataRef CFPropertyListCreateData(CFAllocatorRef, CFPropertyListRef list, CFPropertyListFormat format,
                                   CFOptionFlags options, CFErrorRef* error) {
    if (options != 0) misuse("CFPropertyListCreateData: options");
    if (format != kCFPropertyListXMLFormat_v1_0 && format != kCFPropertyListBinaryFormat_v1_0)
        misuse("CFPropertyListCreateData: format");
    const bool xml = format == kCFPropertyListXMLFormat_v1_0;
    const auto value = propertyOf(list);
    const auto bytes =
        fails("CFPropertyListCreateData") || !value
            ? std::nullopt
            : makePlistCoder()->encode(*value, xml ? PropertyListFormat::xml : PropertyListFormat::binary);
    if (!bytes && error) *error = make<CFErrorRef, FailureObject>();
    return bytes ? make<CFDataRef, Data>(*bytes) : nullptr;
}
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags options,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
    if (options != kCFPropertyListImmutable) misuse("CFPropertyListCreateWithData: options");
    const auto& bytes = objectAs<Data>(data, "CFPropertyListCreateWithData").bytes;
    auto value = fails("CFPropertyListCreateWithData") ? std::nullopt : makePlistCoder()->decode(bytes);
    const bool binary = bytes.size() > 8 && std::memcmp(bytes.data(), "bplist00", 8) == 0;
    if (value && format) *format = binary ? kCFPropertyListBinaryFormat_v1_0 : kCFPropertyListXMLFormat_v1_0;
    if (!value && world().oldPropertyList) {
        constexpr CFPropertyListFormat kOldest{1};
        value = world().oldPropertyList;
        if (format) *format = kOldest;
    }
    if (!value && error) *error = make<CFErrorRef, FailureObject>();
    return value ? newProperty(*value) : nullptr;
}

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user,
                                         CFStringRef host) {
    const auto& domain = world().preferences[noteDomain(application, user, host)];
    const auto found = domain.find(textOf(key));
    return found == domain.end() ? nullptr : newProperty(found->second);
}
void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application,
                           CFStringRef user, CFStringRef host) {
    auto& domain = world().preferences[noteDomain(application, user, host)];
    if (value)
        domain.insert_or_assign(textOf(key), stored(value, "CFPreferencesSetValue"));
    else
        domain.erase(textOf(key));
}
void CFPreferencesSetMultiple(CFDictionaryRef set, CFArrayRef removed, CFStringRef application,
                              CFStringRef user, CFStringRef host) {
    auto& domain = world().preferences[noteDomain(application, user, host)];
    if (removed)
        for (const void* key : objectAs<Array>(removed, "CFPreferencesSetMultiple").values)
            domain.erase(textOf(static_cast<CFStringRef>(key)));
    if (set)
        for (const auto& [key, value] : objectAs<Dictionary>(set, "CFPreferencesSetMultiple").entries)
            domain.insert_or_assign(textOf(static_cast<CFStringRef>(key)),
                                    stored(value, "CFPreferencesSetMultiple"));
}
CFArrayRef CFPreferencesCopyKeyList(CFStringRef application, CFStringRef user, CFStringRef host) {
    const auto& domain = world().preferences[noteDomain(application, user, host)];
    // A domain without values has no list.
    if (domain.empty()) return nullptr;
    auto* keys = new Array;
    for (const auto& [key, value] : domain) keys->values.push_back(newString(key));
    return static_cast<CFArrayRef>(keys->ref());
}
Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host) {
    noteDomain(application, user, host);
    ++world().preferenceSynchronizations;
    return fails("CFPreferencesSynchronize") ? 0 : 1;
}

CFTypeID CFURLGetTypeID() { return static_cast<CFTypeID>(Kind::url); }
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean, UInt8* buffer, CFIndex capacity) {
    const auto& path = objectAs<Url>(url, "CFURLGetFileSystemRepresentation").path;
    if (fails("CFURLGetFileSystemRepresentation") || static_cast<CFIndex>(path.size()) >= capacity) return 0;
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return 1;
}

CFBundleRef CFBundleGetMainBundle() {
    static auto* const bundle = new MainBundle;
    return fails("CFBundleGetMainBundle") ? nullptr : (CFBundleRef)bundle->ref();
}
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    objectAs<MainBundle>(bundle, "CFBundleGetIdentifier");
    return world().bundleIdentifier ? handOut(newString(*world().bundleIdentifier)) : nullptr;
}
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    objectAs<MainBundle>(bundle, "CFBundleGetValueForInfoDictionaryKey");
    const auto found = world().bundleInfo.find(textOf(key));
    return found == world().bundleInfo.end() ? nullptr : handOut(newProperty(found->second));
}
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
    objectAs<MainBundle>(bundle, "CFBundleCopyBundleURL");
    return world().bundlePath ? make<CFURLRef, Url>(*world().bundlePath) : nullptr;
}
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
    objectAs<MainBundle>(bundle, "CFBundleCopyExecutableURL");
    return world().executablePath ? make<CFURLRef, Url>(*world().executablePath) : nullptr;
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
    static auto* const center = new Center;
    return (CFNotificationCenterRef)center->ref();
}
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callBack, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior behavior) {
    objectAs<Center>(center, "CFNotificationCenterAddObserver");
    if (object || behavior != CFNotificationSuspensionBehaviorDeliverImmediately)
        misuse("CFNotificationCenterAddObserver: not every sender at once");
    // The framework finds an observer by this when it is removed.
    if (!observer) misuse("CFNotificationCenterAddObserver: no observer");
    observers().push_back({observer, callBack, textOf(name)});
}
void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                        CFNotificationName name, const void* object) {
    objectAs<Center>(center, "CFNotificationCenterRemoveObserver");
    if (object) misuse("CFNotificationCenterRemoveObserver: an object that nobody observes");
    const auto removed = observers().remove_if(
        [&](const Observer& known) { return known.observer == observer && known.name == textOf(name); });
    if (removed == 0) misuse("CFNotificationCenterRemoveObserver: there is no such observer");
}
void CFNotificationCenterPostNotificationWithOptions(CFNotificationCenterRef center, CFNotificationName name,
                                                     const void* object, CFDictionaryRef userInfo,
                                                     CFOptionFlags options) {
    objectAs<Center>(center, "CFNotificationCenterPostNotificationWithOptions");
    const std::string text = textOf(name);
    world().posts.push_back({text, object != nullptr, userInfo != nullptr, options});
    // The process that posts receives its own message.
    postFromElsewhere(text);
}

size_t malloc_zone_pressure_relief(malloc_zone_t* zone, size_t goal) {
    world().pressureReliefs.emplace_back(zone, goal);
    return 0;
}

os_log_t pintle_os_log_default(void) {
    static os_log_s log;
    return &log;
}
void pintle_os_log(os_log_t log, os_log_type_t type, const char* format, ...) {
    if (log != pintle_os_log_default()) misuse("os_log_with_type: another log");
    // The unified log shows an argument only when it is marked as public.
    std::string plain = format;
    for (std::size_t at = plain.find("%{public}"); at != std::string::npos; at = plain.find("%{public}"))
        plain.replace(at, std::strlen("%{public}"), "%");
    va_list arguments;
    va_start(arguments, format);
    std::string line(4096, '\0');
    const int length = std::vsnprintf(line.data(), line.size(), plain.c_str(), arguments);
    va_end(arguments);
    line.resize(std::min(line.size() - 1, static_cast<std::size_t>(length)));
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    world().systemLog.emplace_back(type, line);
    world().logFormats.emplace_back(format);
}

}  // extern "C"
