#include "settings/version_document.h"

#include <gtest/gtest.h>

namespace pintle {
namespace {

TEST(VersionDocument, BothKeysMakeADocument) {
    EXPECT_EQ(decodeVersionDocument(R"({"version": "1.4.0", "build": 14})"), (RemoteVersion{"1.4.0", 14}));
}

TEST(VersionDocument, TheOrderOfTheKeysAndFurtherKeysDoNotMatter) {
    EXPECT_EQ(decodeVersionDocument(R"({"notes": ["a", {"b": null}], "build": 14, "version": "1.4.0"})"),
              (RemoteVersion{"1.4.0", 14}));
}

TEST(VersionDocument, AMissingKeyIsNoDocument) {
    EXPECT_FALSE(decodeVersionDocument(R"({"version": "1.4.0"})"));
    EXPECT_FALSE(decodeVersionDocument(R"({"build": 14})"));
    EXPECT_FALSE(decodeVersionDocument("{}"));
    EXPECT_FALSE(decodeVersionDocument(R"({"Version": "1.4.0", "Build": 14})"));
}

TEST(VersionDocument, ABuildThatIsNoIntegerIsNoDocument) {
    for (const auto* build : {R"("14")", "14.5", "14.0", "1e2", "true", "null", "[14]", "{}", "0x0e", "014"})
        EXPECT_FALSE(decodeVersionDocument(std::string(R"({"version": "1.4.0", "build": )") + build + "}"))
            << build;
}

TEST(VersionDocument, AVersionThatIsNoStringIsNoDocument) {
    for (const auto* version : {"1.4", "14", "null", "true", R"(["1.4.0"])"})
        EXPECT_FALSE(decodeVersionDocument(std::string(R"({"build": 14, "version": )") + version + "}"))
            << version;
}

TEST(VersionDocument, BuildsReachToTheEdgesOf64Bits) {
    EXPECT_EQ(decodeVersionDocument(R"({"version": "", "build": 9223372036854775807})"),
              (RemoteVersion{"", 9223372036854775807LL}));
    EXPECT_EQ(decodeVersionDocument(R"({"version": "", "build": -9223372036854775808})"),
              (RemoteVersion{"", std::numeric_limits<std::int64_t>::min()}));
    EXPECT_FALSE(decodeVersionDocument(R"({"version": "", "build": 9223372036854775808})"));
    EXPECT_FALSE(decodeVersionDocument(R"({"version": "", "build": 99999999999999999999999})"));
}

TEST(VersionDocument, TextThatIsNotOneWholeJsonObjectIsNoDocument) {
    const std::string good = R"({"version": "1.4.0", "build": 14})";
    ASSERT_TRUE(decodeVersionDocument(good));
    for (std::size_t cut = 0; cut < good.size(); ++cut)
        EXPECT_FALSE(decodeVersionDocument(good.substr(0, cut))) << cut;
    for (const auto* text :
         {"", " ", "null", "14", R"("1.4.0")", R"([{"version": "1.4.0", "build": 14}])",
          R"({"version": "1.4.0", "build": 14} x)", R"({"version": "1.4.0", "build": 14}{})",
          R"({"version": "1.4.0", "build": 14,})", R"({version: "1.4.0", build: 14})",
          R"({'version': '1.4.0', 'build': 14})", R"(/* a */ {"version": "1.4.0", "build": 14})",
          "<!DOCTYPE html><html><body>Please log in</body></html>",
          "{\"version\": \"\xff\xfe\", \"build\": 14}", "{\"version\": \"a\nb\", \"build\": 14}"})
        EXPECT_FALSE(decodeVersionDocument(text)) << text;
}

TEST(VersionDocument, ANulEndsNoDocument) {
    using namespace std::string_literals;
    for (const auto& tail : {"\0"s, "\0{}"s, " \0x"s})
        EXPECT_FALSE(decodeVersionDocument(R"({"version": "1.4.0", "build": 14})" + tail));
}

TEST(VersionDocument, DeepNestingIsReadWithoutHarm) {
    EXPECT_FALSE(decodeVersionDocument(std::string(64 * 1024, '[')));
    const std::string nested = std::string(20000, '[') + std::string(20000, ']');
    EXPECT_EQ(decodeVersionDocument(R"({"version": "1", "build": 2, "more": )" + nested + "}"),
              (RemoteVersion{"1", 2}));
}

TEST(BuildNumber, DigitsWithAnOptionalSignAreANumber) {
    EXPECT_EQ(parseBuildNumber("12"), 12);
    EXPECT_EQ(parseBuildNumber("+12"), 12);
    EXPECT_EQ(parseBuildNumber("-12"), -12);
    EXPECT_EQ(parseBuildNumber("007"), 7);
    EXPECT_EQ(parseBuildNumber("9223372036854775807"), 9223372036854775807LL);
}

TEST(BuildNumber, AnyOtherTextCountsAsZero) {
    for (const auto* text : {"", "1.2", "1.4.0", " 12", "12 ", "12a", "+", "-", "+-12", "-+12", "--12",
                             "++12", "0x10", "1e3", "9223372036854775808", "twelve"})
        EXPECT_EQ(parseBuildNumber(text), 0) << text;
}

}  // namespace
}  // namespace pintle
