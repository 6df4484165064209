// Core Foundation references with an owner, and texts both ways. Used by the files of this folder. Any
// thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>
#include <utility>

namespace pintle {

/// Owns one reference to a Core Foundation object, or none.
template <typename Ref>
class CfRef {
  public:
    CfRef() = default;
    CfRef(const CfRef& other) : ref_(other.ref_) {
        if (ref_) CFRetain(ref_);
    }
    CfRef(CfRef&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
    CfRef& operator=(CfRef other) noexcept {
        std::swap(ref_, other.ref_);
        return *this;
    }
    ~CfRef() {
        if (ref_) CFRelease(ref_);
    }

    /// Takes over what a function named Create or Copy returned; may be null.
    static CfRef adopt(Ref ref) {
        CfRef owner;
        owner.ref_ = ref;
        return owner;
    }
    /// Keeps what a function named Get returned, or what a callback was handed; may be null.
    static CfRef retain(Ref ref) {
        if (ref) CFRetain(ref);
        return adopt(ref);
    }

    Ref get() const { return ref_; }
    explicit operator bool() const { return ref_ != nullptr; }

  private:
    Ref ref_ = nullptr;
};

/// Null when the bytes are not UTF-8.
CfRef<CFStringRef> cfString(std::string_view text);
/// In UTF-8; empty for null and for what is no string.
std::string fromCfString(CFTypeRef text);

}  // namespace pintle
