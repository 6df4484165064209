// The objects behind the fake frameworks' references: counted, and known by address, so that a reference that
// was given back too often, was never handed out, or is of another type ends the test at once, and one that
// was kept is found at its end. Any thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <string>
#include <utility>

namespace pintle::mac_fake {

/// The fake's own type numbers, which stand for CFTypeID.
enum class Kind : unsigned long {
    null = 1,
    string,
    number,
    boolean,
    data,
    date,
    array,
    dictionary,
    set,
    url,
    bundle,
    preferences,
    timer,
    source,
    observer,
    runLoop,
    notificationCenter,
    error,
    image,
    colorSpace,
    context,
    dataProvider,
    imageDestination,
    imageSource,
    element,
    uuid,
    cursor,
};

/// Says what went wrong and ends the process.
[[noreturn]] void misuse(const std::string& what);

class Object {
  public:
    enum class Life { counted, immortal };
    explicit Object(Kind kind, Life life = Life::counted);
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object();

    Kind kind() const { return kind_; }
    bool isImmortal() const { return life_ == Life::immortal; }
    /// As a framework's reference.
    const void* ref() const { return this; }

    virtual bool equals(const Object& other) const { return this == &other; }
    /// For people.
    virtual std::string describe() const;

    long references = 1;

  private:
    Kind kind_;
    Life life_;
};

/// The object behind a reference; misuse when there is none.
Object& objectOf(const void* ref, const char* function);

/// The same, of one type. A constant string of the compiler becomes an object at its first use.
template <typename T>
T& objectAs(const void* ref, const char* function) {
    auto* found = dynamic_cast<T*>(&objectOf(ref, function));
    if (!found) misuse(std::string(function) + " was handed " + objectOf(ref, function).describe());
    return *found;
}

const void* retain(const void* ref, const char* function);
void release(const void* ref, const char* function);

/// Makes a counted object; the caller owns its reference.
template <typename Ref, typename T, typename... Arguments>
Ref make(Arguments&&... arguments) {
    return (Ref)(new T(std::forward<Arguments>(arguments)...))->ref();
}

/// Counted objects that live now, and their descriptions.
std::size_t liveObjects();
std::string describeLiveObjects();

}  // namespace pintle::mac_fake
