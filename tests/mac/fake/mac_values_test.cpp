// Texts, property lists, preferences and images.
#include <ImageIO/ImageIO.h>

#include <cmath>
#include <limits>

#include "platform/mac/cf_property.h"
#include "platform/mac/cg_image.h"
#include "platform/mac/mac_image_service.h"
#include "platform/mac/mac_key_value_store.h"
#include "platform/mac/mac_property_list_coder.h"
#include "tests/mac/fake/fake_string.h"
#include "tests/mac/fake/fake_test.h"
#include "tests/mac/fake/fake_values.h"

namespace pintle {
namespace {

using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(CfReference, CopiesAndMovesKeepTheCountRight) {
    auto first = CfRef<CFStringRef>::adopt(mac_fake::newString("a"));
    const CfRef<CFStringRef> copy = first;
    CfRef<CFStringRef> moved = std::move(first);
    moved = copy;
    moved = CfRef<CFStringRef>::retain(copy.get());
    CfRef<CFStringRef>& self = moved;
    moved = self;
    EXPECT_TRUE(moved);
    moved = {};
    EXPECT_FALSE(moved);
    EXPECT_FALSE(CfRef<CFStringRef>::retain(nullptr));
}

TEST(CfText, ATextComesBackAndWhatIsNoUtf8IsNull) {
    for (const std::string& text : {std::string(), std::string("plain"), std::string("a\0b", 3),
                                    std::string("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\xB1")})
        EXPECT_EQ(fromCfString(cfString(text).get()), text);
    EXPECT_FALSE(cfString("\xff"));
    EXPECT_FALSE(cfString("\xed\xa0\x80"));
}

TEST(CfText, NullAndWhatIsNoTextAreEmptyAndAHalfCharacterIsAQuestionMark) {
    EXPECT_EQ(fromCfString(nullptr), "");
    EXPECT_EQ(fromCfString(kCFBooleanTrue), "");
    const auto half = CfRef<CFStringRef>::adopt(
        mac_fake::make<CFStringRef, mac_fake::String>(std::u16string{u'a', char16_t{0xd83d}, u'b'}));
    EXPECT_EQ(fromCfString(half.get()), "a?b");
}

TEST(CfProperty, EveryTypeGoesThereAndBack) {
    const PropertyValue all = PropertyDictionary{
        {"true", true},
        {"false", false},
        {"one", 1},
        {"largest", std::numeric_limits<std::int64_t>::max()},
        {"whole real", 1.0},
        {"real", 0.1},
        {"text", "\xC3\xA4"},
        {"data", PropertyData{0, 1, 255}},
        {"no data", PropertyData{}},
        {"date", PropertyDate{700000000.25}},
        {"list", PropertyArray{1, "two", PropertyDictionary{{"three", PropertyArray{}}}}},
    };
    EXPECT_EQ(fromCfProperty(toCfProperty(all).get()), all);
}

TEST(CfProperty, WhatHasNoFormIsNullOrAbsentAndGivesBackWhatWasBegun) {
    EXPECT_FALSE(toCfProperty("\xff"));
    EXPECT_FALSE(toCfProperty(PropertyArray{1, "good", "\xff"}));
    EXPECT_FALSE(toCfProperty(PropertyDictionary{{"good", 1}, {"key", PropertyArray{"\xff"}}}));
    EXPECT_FALSE(toCfProperty(PropertyDictionary{{"\xff", 1}}));
    EXPECT_FALSE(fromCfProperty(nullptr));
    const auto space = CfRef<CGColorSpaceRef>::adopt(CGColorSpaceCreateDeviceRGB());
    EXPECT_FALSE(fromCfProperty(space.get()));
    const auto list =
        CfRef<CFMutableArrayRef>::adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(list.get(), kCFBooleanTrue);
    CFArrayAppendValue(list.get(), space.get());
    EXPECT_FALSE(fromCfProperty(list.get()));
    const auto entries = CfRef<CFMutableDictionaryRef>::adopt(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    CFDictionarySetValue(entries.get(), kCFBooleanTrue, kCFBooleanTrue);
    EXPECT_FALSE(fromCfProperty(entries.get()));
}

TEST(CfProperty, TreesThatAreTooDeepHaveNoForm) {
    PropertyValue deep = 1;
    for (int i = 1; i < kDeepestCfProperty; ++i) deep = PropertyArray{deep};
    const auto deepest = toCfProperty(deep);
    ASSERT_TRUE(deepest);
    EXPECT_EQ(fromCfProperty(deepest.get()), deep);
    EXPECT_FALSE(toCfProperty(PropertyArray{deep}));
    const auto deeper =
        CfRef<CFMutableArrayRef>::adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(deeper.get(), deepest.get());
    EXPECT_FALSE(fromCfProperty(deeper.get()));
}

TEST(MacPropertyListCoder, EachCallThatFailsIsAbsent) {
    const auto coder = makeMacPropertyListCoder();
    const auto bytes = coder->encode(PropertyDictionary{{"a", 1}}, PropertyListFormat::xml);
    ASSERT_TRUE(bytes);
    world().failing = {"CFPropertyListCreateData", "CFPropertyListCreateWithData"};
    EXPECT_FALSE(coder->encode(1, PropertyListFormat::binary));
    EXPECT_FALSE(coder->encode(1, PropertyListFormat::xml));
    EXPECT_FALSE(coder->decode(*bytes));
}

TEST(MacPropertyListCoder, TheOldestFormIsNotTaken) {
    const auto coder = makeMacPropertyListCoder();
    const std::string old = "{ a = 1; }";
    world().oldPropertyList = PropertyDictionary{{"a", "1"}};
    EXPECT_FALSE(coder->decode(std::vector<std::uint8_t>(old.begin(), old.end())));
}

TEST(MacPropertyListCoder, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        const auto coder = makeMacPropertyListCoder();
        const auto bytes =
            coder->encode(PropertyDictionary{{"a", PropertyArray{1, "b"}}}, PropertyListFormat::xml);
        if (bytes) coder->decode(*bytes);
    });
}

TEST(MacKeyValueStore, LivesInTheDomainOfTheUserForAnyHostAndNowhereElse) {
    const auto store = makeMacKeyValueStore("com.pintle.app");
    store->set("a", 1);
    store->remove("b");
    EXPECT_FALSE(store->object("c"));
    store->removeDomain();
    store->synchronize();
    EXPECT_THAT(world().preferencePlaces, ElementsAre("current user/any host"));
    EXPECT_EQ(world().preferences.size(), 1U);
    EXPECT_TRUE(world().preferences.contains("com.pintle.app"));
}

TEST(MacKeyValueStore, EachWriteIsHandedToTheServiceBeforeAnyObserverIsNotified) {
    const auto store = makeMacKeyValueStore("d");
    int before = -1;
    const Subscription observer = store->observe("a", [&] { before = world().preferenceSynchronizations; });
    store->set("a", 1);
    EXPECT_EQ(before, 1);
    store->remove("a");
    EXPECT_EQ(before, 2);
}

TEST(MacKeyValueStore, AValueWithoutAFormLeavesTheStoredOne) {
    const auto store = makeMacKeyValueStore("d");
    store->set("a", 1);
    store->set("a", "\xff");
    EXPECT_EQ(store->object("a"), PropertyValue(1));
    store->set("\xff", 1);
    store->remove("\xff");
    EXPECT_FALSE(store->object("\xff"));
}

TEST(MacKeyValueStore, AServiceThatDoesNotSynchronizeIsNoHarm) {
    world().failing = {"CFPreferencesSynchronize"};
    const auto store = makeMacKeyValueStore("d");
    store->set("a", 1);
    EXPECT_EQ(store->object("a"), PropertyValue(1));
}

TEST(MacKeyValueStore, RemovingAnEmptyDomainNotifiesNobody) {
    const auto store = makeMacKeyValueStore("d");
    int calls = 0;
    const Subscription observer = store->observe("a", [&] { ++calls; });
    store->removeDomain();
    EXPECT_EQ(calls, 0);
}

TEST(MacKeyValueStore, TheLastStateIsHandedOverAtTheEnd) {
    { const auto store = makeMacKeyValueStore("d"); }
    EXPECT_EQ(world().preferenceSynchronizations, 1);
}

TEST(MacImageService, WritesOnePngByItsTypesName) {
    const auto file = makeMacImageService()->encodePng(picture(8, 8));
    ASSERT_TRUE(file);
    EXPECT_THAT(world().imageTypes, ElementsAre("public.png"));
}

TEST(MacImageService, EachCallThatFailsIsAbsent) {
    const auto images = makeMacImageService();
    const auto file = images->encodePng(picture(8, 8));
    ASSERT_TRUE(file);
    for (const char* function :
         {"CGColorSpaceCreateDeviceRGB", "CGDataProviderCreateWithData", "CGImageCreate",
          "CGImageDestinationCreateWithData", "CGImageDestinationFinalize"}) {
        world().failing = {function};
        EXPECT_FALSE(images->encodePng(picture(8, 8))) << function;
    }
    for (const char* function :
         {"CGImageSourceCreateWithData", "CGImageSourceCreateImageAtIndex", "CGImageSourceGetStatusAtIndex",
          "CGColorSpaceCreateDeviceRGB", "CGBitmapContextCreate"}) {
        world().failing = {function};
        EXPECT_FALSE(images->decodePng(*file)) << function;
    }
    world().failing.clear();
    EXPECT_EQ(images->decodePng(*file), picture(8, 8));
}

TEST(MacImageService, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        const auto images = makeMacImageService();
        const auto file = images->encodePng(picture(8, 8));
        if (file) images->decodePng(*file);
    });
}

TEST(CgImage, PixelsAreSharedAndKeptAliveByTheImage) {
    CfRef<CGImageRef> image;
    const std::uint8_t* bytes = nullptr;
    {
        const Bitmap bitmap = picture(4, 4);
        bytes = bitmap.bytes().data();
        image = toCgImage(bitmap);
    }
    ASSERT_TRUE(image);
    EXPECT_EQ(mac_fake::providerBytes(image.get()), bytes);
    EXPECT_EQ(fromCgImage(image.get()), picture(4, 4));
}

TEST(CgImage, AnImageIsDrawnIntoTheSizeThatIsAskedFor) {
    const auto image = toCgImage(picture(4, 4));
    EXPECT_EQ(fromCgImage(image.get(), 2, 3)->height(), 3);
    EXPECT_FALSE(fromCgImage(image.get(), 0, 3));
}

}  // namespace
}  // namespace pintle
