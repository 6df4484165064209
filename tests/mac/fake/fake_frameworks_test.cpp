// The fakes themselves: a gate that could not fail would prove nothing.
#include <os/log.h>

#include "tests/mac/fake/fake_object.h"
#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_test.h"

namespace pintle::mac_fake {
namespace {

TEST(FakeFrameworksDeath, AReferenceGivenBackTooOftenEndsTheTest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            const auto text = newString("twice");
            CFRelease(text);
            CFRelease(text);
        },
        "CFRelease was handed a reference to nothing that lives");
}

TEST(FakeFrameworksDeath, NullIsNoReference) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(CFRelease(nullptr), "CFRelease was handed null");
    EXPECT_DEATH(CFStringGetLength(nullptr), "CFStringGetLength was handed null");
}

TEST(FakeFrameworksDeath, AReferenceOfAnotherTypeEndsTheTest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(CFArrayGetCount(reinterpret_cast<CFArrayRef>(newString("no list"))),
                 "CFArrayGetCount was handed the string \"no list\"");
}

TEST(FakeFrameworks, AReferenceThatIsKeptIsFound) {
    const auto text = newString("kept");
    EXPECT_THAT(leftovers(), ::testing::HasSubstr("the string \"kept\" with 1 references"));
    CFRelease(text);
    EXPECT_EQ(leftovers(), "");
}

TEST(FakeFrameworks, AContainerKeepsItsContentAndGivesItBack) {
    const auto array = CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks);
    const auto text = newString("inside");
    CFArrayAppendValue(array, text);
    CFRelease(text);
    EXPECT_EQ(textOf(static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, 0))), "inside");
    CFRelease(array);
    EXPECT_EQ(leftovers(), "");
}

TEST(FakeFrameworks, TheNumberedCallFails) {
    world().failAt = 2;
    EXPECT_FALSE(fails("a"));
    EXPECT_TRUE(fails("b"));
    EXPECT_FALSE(fails("c"));
    world().failing = {"d"};
    EXPECT_TRUE(fails("d"));
}

TEST(FakeFrameworks, TextsAreUtf16AndOnlyWholeCharactersHaveUtf8) {
    EXPECT_EQ(utf16("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xB1"), u"a\u00e4\u20ac\U0001f5b1");
    EXPECT_EQ(utf8(u"a\u00e4\u20ac\U0001f5b1"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xB1");
    EXPECT_FALSE(utf16("\xff"));
    EXPECT_FALSE(utf16("\xC3"));
    EXPECT_FALSE(utf16("\xed\xa0\x80"));
    EXPECT_FALSE(utf8(std::u16string(1, char16_t{0xd83d})));
}

}  // namespace
}  // namespace pintle::mac_fake
