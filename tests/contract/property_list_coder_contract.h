// What every coder of property lists does. Include it once, after naming the backends to try as the
// type list `PropertyListCoders`.
#pragma once

#include <gmock/gmock.h>

#include <array>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/property_list_coder.h"

namespace pintle {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr std::array kFormats = {PropertyListFormat::binary, PropertyListFormat::xml};

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

PropertyDictionary everyType() {
    return {
        {"true", true},
        {"false", false},
        {"zero", 0},
        {"negative", std::int64_t{-1}},
        {"smallest", std::numeric_limits<std::int64_t>::min()},
        {"largest", std::numeric_limits<std::int64_t>::max()},
        {"byte", 255},
        {"word", 65536},
        {"real", 0.1},
        {"whole real", 1.0},
        {"negative real", -1234.5678901234567},
        {"tiny real", 5e-324},
        {"huge real", 1.7976931348623157e308},
        {"text", "plain"},
        {"empty", ""},
        {"marks", "<key>&amp;\"'</key>\n\t"},
        {"letters", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xB1"},
        {"\xC3\xA4 key & <mark>", "value"},
        {"data", PropertyData{0, 255, 10, 13, 60}},
        {"no data", PropertyData{}},
        {"date", PropertyDate{0}},
        {"later date", PropertyDate{793843200}},
        {"earlier date", PropertyDate{-978307200}},
        {"far date", PropertyDate{63113904000.0}},
        {"list", PropertyArray{1, 2.0, "three", true, PropertyArray{}, PropertyDictionary{}}},
        {"nested",
         PropertyDictionary{
             {"a", PropertyDictionary{{"b", PropertyArray{PropertyValue(PropertyArray{1})}}}}}},
    };
}

template <typename Backend>
class PropertyListCoderContract : public ::testing::Test {
  protected:
    std::unique_ptr<PropertyListCoder> coder_ = Backend::make();
};
TYPED_TEST_SUITE(PropertyListCoderContract, PropertyListCoders);

TYPED_TEST(PropertyListCoderContract, EveryValueComesBackFromBothForms) {
    for (const auto format : kFormats) {
        for (const auto& [key, value] : everyType()) {
            const auto bytes = this->coder_->encode(PropertyDictionary{{key, value}}, format);
            ASSERT_TRUE(bytes) << key;
            EXPECT_EQ(this->coder_->decode(*bytes), PropertyValue(PropertyDictionary{{key, value}})) << key;
        }
        const auto bytes = this->coder_->encode(everyType(), format);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(this->coder_->decode(*bytes), PropertyValue(everyType()));
    }
}

TYPED_TEST(PropertyListCoderContract, AnyValueMayBeTheRoot) {
    for (const auto format : kFormats)
        for (const auto& [key, value] : everyType())
            EXPECT_EQ(this->coder_->decode(this->coder_->encode(value, format).value()), value) << key;
}

TYPED_TEST(PropertyListCoderContract, BytesThatAreNoListAreAbsent) {
    for (const std::string_view text : {"", "x", "bplist", "bplist00", "no list at all", "<", "{}", "\n\n"})
        EXPECT_FALSE(this->coder_->decode(bytesOf(text))) << text;
}

TYPED_TEST(PropertyListCoderContract, ATruncatedListIsAbsentAtEveryLength) {
    for (const auto format : kFormats) {
        const auto bytes = this->coder_->encode(everyType(), format).value();
        // The newline after the last element may go.
        for (std::size_t length = 0; length + 1 < bytes.size(); ++length)
            EXPECT_FALSE(this->coder_->decode(std::span(bytes).first(length))) << length;
    }
}

TYPED_TEST(PropertyListCoderContract, AListWithSomethingAfterItIsAbsent) {
    for (const auto format : kFormats) {
        auto bytes = this->coder_->encode(everyType(), format).value();
        bytes.push_back('x');
        EXPECT_FALSE(this->coder_->decode(bytes));
    }
}

}  // namespace
}  // namespace pintle
