// The loader of libraries and the private functions that it finds.
#include <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_values.h"
#include "tests/mac/fake/mac_world.h"

namespace pintle::mac_fake {
namespace {

extern "C" {

std::uint32_t fakeMainConnection() { return world().connection; }

CGError fakeRegister(std::uint32_t connection, const char* identifier, bool setGlobally, bool instantly,
                     CGSize size, CGPoint hotspot, unsigned long frameCount, CGFloat frameDuration,
                     CFArrayRef images, std::int32_t* seed) {
    Registration registration;
    registration.connection = connection;
    registration.identifier = identifier;
    registration.setGlobally = setGlobally;
    registration.instantly = instantly;
    registration.size = size;
    registration.hotspot = hotspot;
    registration.frameCount = frameCount;
    registration.frameDuration = frameDuration;
    for (const void* image : objectAs<Array>(images, "CGSRegisterCursorWithImages").values)
        registration.images.push_back(pixelsOf((CGImageRef) const_cast<void*>(image)));
    registration.seedBefore = *seed;
    *seed = 99;
    world().registrations.push_back(std::move(registration));
    const auto error = world().registerErrors.find(identifier);
    return CGError{error == world().registerErrors.end() ? 0 : error->second};
}

CGError fakeUnregisterAll(std::uint32_t connection) {
    world().unregistered.push_back(connection);
    return CGError{world().unregisterError};
}

CGError fakeCopy(std::uint32_t connection, const char* identifier, CGSize* size, CGPoint* hotspot,
                 unsigned long* frameCount, CGFloat* frameDuration, CFArrayRef* images) {
    if (connection != world().connection) misuse("CGSCopyRegisteredCursorImages: another connection");
    if (size->width != 0 || size->height != 0 || hotspot->x != 0 || hotspot->y != 0 || *frameCount != 0 ||
        *frameDuration != 0 || *images)
        misuse("CGSCopyRegisteredCursorImages: answers that were not emptied before");
    const auto found = world().served.find(identifier);
    if (found == world().served.end()) return CGError{world().copyError};
    const ServedCursor& cursor = found->second;
    *size = cursor.size;
    *hotspot = cursor.hotspot;
    *frameCount = cursor.frameCount;
    *frameDuration = cursor.frameDuration;
    if (!cursor.withoutArray) {
        auto* array = new Array;
        if (cursor.withStranger) array->values.push_back(newString("no image"));
        for (const auto& image : cursor.images) array->values.push_back(newImage(image));
        *images = static_cast<CFArrayRef>(array->ref());
    }
    // An error may come together with an array, which is the caller's all the same.
    return CGError{fails("CGSCopyRegisteredCursorImages") ? world().copyError : 0};
}

CGError fakeSetProperty(std::uint32_t connection, std::uint32_t target, CFStringRef key, CFTypeRef value) {
    const auto* flag = dynamic_cast<const BooleanObject*>(&objectOf(value, "CGSSetConnectionProperty"));
    if (!flag) misuse("CGSSetConnectionProperty: no boolean");
    world().connectionProperties.emplace_back(connection, target, textOf(key), flag->value);
    return CGError{world().connectionPropertyError};
}

bool fakeScreenWatched() { return world().screenWatched; }
int fakeSeed() { return world().cursorSeed; }

}  // extern "C"

struct Named {
    const char* name;
    void* function;
};

// Both libraries know all of them.
const Named functions[] = {
    {"CGSMainConnectionID", reinterpret_cast<void*>(&fakeMainConnection)},
    {"CGSRegisterCursorWithImages", reinterpret_cast<void*>(&fakeRegister)},
    {"CoreCursorUnregisterAll", reinterpret_cast<void*>(&fakeUnregisterAll)},
    {"CGSCopyRegisteredCursorImages", reinterpret_cast<void*>(&fakeCopy)},
    {"CGSSetConnectionProperty", reinterpret_cast<void*>(&fakeSetProperty)},
    {"CGSIsScreenWatcherPresent", reinterpret_cast<void*>(&fakeScreenWatched)},
    {"CGSCurrentCursorSeed", reinterpret_cast<void*>(&fakeSeed)},
};

struct Library {
    std::string name;
};

}  // namespace
}  // namespace pintle::mac_fake

using namespace pintle::mac_fake;

// The backend is compiled with the names of the loader's two functions replaced by these.
extern "C" void* fake_dlopen(const char* path, int mode) {
    world().lookups.push_back(std::string("open ") + path + ' ' + std::to_string(mode));
    const std::string name = std::string(path).substr(std::string(path).rfind('/') + 1);
    if (world().missingLibraries.contains(name)) return nullptr;
    static auto* const all = new std::map<std::string, Library>;
    return &all->try_emplace(name, Library{name}).first->second;
}
extern "C" void* fake_dlsym(void* library, const char* function) {
    // A null handle would search the whole process.
    if (!library) misuse("dlsym on no library");
    const auto& name = static_cast<const Library*>(library)->name;
    world().lookups.push_back("find " + name + ' ' + function);
    if (world().missingFunctions.contains({name, function})) return nullptr;
    for (const auto& known : functions)
        if (known.name == std::string(function)) return known.function;
    return nullptr;
}
