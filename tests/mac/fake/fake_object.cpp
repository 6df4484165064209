#include "tests/mac/fake/fake_object.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

#include "tests/mac/fake/fake_string.h"

extern "C" int __CFConstantStringClassReference[1] = {0};

namespace pintle::mac_fake {
namespace {

/// What the compiler writes for a constant string.
struct ConstantString {
    const int* isa;
    int flags;
    const char* bytes;
    long length;
};

struct Registry {
    std::recursive_mutex mutex;
    std::unordered_map<const void*, Object*> objects;
    /// Where objects lived before.
    std::unordered_set<const void*> dead;
    /// The objects of constant strings, by the constants' addresses.
    std::unordered_map<const void*, Object*> constants;
};

Registry& registry() {
    static auto* const it = new Registry;
    return *it;
}

Object& constantString(const void* ref) {
    constexpr int kUtf16 = 0x7d0;
    const auto& constant = *static_cast<const ConstantString*>(ref);
    const auto length = static_cast<std::size_t>(constant.length);
    std::u16string text;
    if (constant.flags == kUtf16)
        text.assign(reinterpret_cast<const char16_t*>(constant.bytes), length);
    else
        text.assign(constant.bytes, constant.bytes + length);
    Object*& known = registry().constants[ref];
    if (!known) known = new String(std::move(text), Object::Life::immortal);
    return *known;
}

}  // namespace

void misuse(const std::string& what) {
    std::fprintf(stderr, "mac fake: %s\n", what.c_str());
    std::abort();
}

Object::Object(Kind kind, Life life) : kind_(kind), life_(life) {
    const std::lock_guard lock(registry().mutex);
    registry().objects.emplace(this, this);
    registry().dead.erase(this);
}

Object::~Object() {
    const std::lock_guard lock(registry().mutex);
    registry().objects.erase(this);
    registry().dead.insert(this);
}

std::string Object::describe() const {
    return "an object of kind " + std::to_string(static_cast<int>(kind_));
}

Object& objectOf(const void* ref, const char* function) {
    if (!ref) misuse(std::string(function) + " was handed null");
    const std::lock_guard lock(registry().mutex);
    const auto found = registry().objects.find(ref);
    if (found != registry().objects.end()) return *found->second;
    if (registry().dead.contains(ref))
        misuse(std::string(function) + " was handed a reference to nothing that lives");
    if (registry().constants.contains(ref) ||
        static_cast<const ConstantString*>(ref)->isa == __CFConstantStringClassReference)
        return constantString(ref);
    misuse(std::string(function) + " was handed a reference that is none");
}

const void* retain(const void* ref, const char* function) {
    const std::lock_guard lock(registry().mutex);
    Object& object = objectOf(ref, function);
    if (!object.isImmortal()) ++object.references;
    return ref;
}

void release(const void* ref, const char* function) {
    const std::lock_guard lock(registry().mutex);
    Object& object = objectOf(ref, function);
    if (object.isImmortal()) return;
    if (--object.references == 0) delete &object;
}

std::size_t liveObjects() {
    const std::lock_guard lock(registry().mutex);
    std::size_t live = 0;
    for (const auto& [address, object] : registry().objects) live += object->isImmortal() ? 0 : 1;
    return live;
}

std::string describeLiveObjects() {
    const std::lock_guard lock(registry().mutex);
    std::string all;
    for (const auto& [address, object] : registry().objects)
        if (!object->isImmortal())
            all += object->describe() + " with " + std::to_string(object->references) + " references\n";
    return all;
}

}  // namespace pintle::mac_fake
