// The fake's strings: UTF-16 as the framework's, which may hold half a surrogate pair.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tests/mac/fake/fake_object.h"

namespace pintle::mac_fake {

/// Absent when the bytes are not UTF-8.
std::optional<std::u16string> utf16(std::string_view text);
/// Absent when half a surrogate pair stands alone in it.
std::optional<std::string> utf8(std::u16string_view text);

class String : public Object {
  public:
    explicit String(std::u16string content, Life life = Life::counted)
        : Object(Kind::string, life), text(std::move(content)) {}
    bool equals(const Object& other) const override {
        const auto* string = dynamic_cast<const String*>(&other);
        return string && string->text == text;
    }
    std::string describe() const override { return "the string \"" + utf8(text).value_or("?") + '"'; }

    const std::u16string text;
};

/// A new string; the caller owns its reference. The text must be UTF-8.
CFStringRef newString(std::string_view text);
/// One that lives for ever, for the frameworks' constants.
CFStringRef constantString(std::string_view text);
/// The text of a string reference, for tests and transcripts.
std::string textOf(CFStringRef ref);

}  // namespace pintle::mac_fake
