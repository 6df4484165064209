#include "app/languages.h"

#include <gtest/gtest.h>

#include "app/alert_texts.h"

namespace pintle {
namespace {

TEST(Languages, TheFirstWantedOneThatThereIsDecides) {
    EXPECT_EQ(languageFor({"de-DE", "de", "fr-FR"}), "de");
    EXPECT_EQ(languageFor({"pt_BR.UTF-8"}), "pt");
    EXPECT_EQ(languageFor({"nl-NL", "nl", "es-ES"}), "es");
    EXPECT_EQ(languageFor({"ar"}), "ar");
}

TEST(Languages, EnglishStaysEnglishAndSoDoesWhatNobodyTranslated) {
    EXPECT_EQ(languageFor({"en-GB", "de-DE"}), std::nullopt);
    EXPECT_EQ(languageFor({"nl-NL"}), std::nullopt);
    EXPECT_EQ(languageFor({"C"}), std::nullopt);
    EXPECT_EQ(languageFor({"", "deutsch"}), std::nullopt);
    EXPECT_EQ(languageFor({}), std::nullopt);
}

TEST(Languages, ChineseIsTheOneInSimplifiedCharacters) {
    EXPECT_EQ(languageFor({"zh-CN"}), "zh");
    EXPECT_EQ(languageFor({"zh_Hans_SG"}), "zh");
    EXPECT_EQ(languageFor({"zh-TW", "zh-Hant-TW", "zh"}), "zh") << "asked for in the end";
    EXPECT_EQ(languageFor({"zh-TW", "zh-Hant-TW", "ja"}), "ja");
    EXPECT_EQ(languageFor({"zh_HK"}), std::nullopt);
}

TEST(AlertTexts, AVersionIsTakenOutOfItsSentence) {
    EXPECT_EQ(alertText("Pintle 1.4.0 is available"), UserText("Pintle %1 is available", "1.4.0"));
    EXPECT_EQ(
        alertText("You have version 1.1.0. Download the new version and replace Pintle in Applications.")
            .argument,
        "1.1.0");
    EXPECT_EQ(alertText("Pintle is up to date"), UserText("Pintle is up to date"));
}

TEST(AlertTexts, SayInEnglishWhatTheyWereMadeOf) {
    for (const char* text : {"Pintle 9 is available", "Later", ""})
        EXPECT_EQ(alertText(text).english(), text);
}

}  // namespace
}  // namespace pintle
