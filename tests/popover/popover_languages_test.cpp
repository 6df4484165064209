#include <gmock/gmock.h>

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlEngine>
#include <QQmlIncubationController>

#include "app/about_window_model.h"
#include "app/alert_texts.h"
#include "app/error_sentence.h"
#include "app/languages.h"
#include "app/quick/translated.h"
#include "app/quick/translations.h"
#include "app/row_announcement.h"
#include "app/settings_window_model.h"
#include "tests/popover/popover_world.h"
#include "tests/popover/text_fit.h"

namespace pintle {
namespace {

using testing::IsEmpty;

struct PopoverLanguagesTest : PopoverWorld,
                              testing::WithParamInterface<std::tuple<std::string_view, double>> {
    std::unique_ptr<QTranslator> translator =
        installTranslation({QString::fromStdString(std::string(language()))});
    ~PopoverLanguagesTest() override { QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto); }
    static std::string_view language() { return std::get<0>(GetParam()); }
    static double textScale() { return std::get<1>(GetParam()); }
    /// What stays cut once every row is made, which happens bit by bit, and laid out after that.
    std::vector<std::string> cut(const std::set<std::string>& names) const {
        auto* const maker = view->engine()->incubationController();
        settle();
        while (maker && maker->incubatingObjectCount() > 0) {
            maker->incubateFor(1000);
            settle();
        }
        const QDeadlineTimer patience(5000);
        auto cut = cutTexts(view->rootObject(), names);
        while (!cut.empty() && !patience.hasExpired()) {
            settle();
            cut = cutTexts(view->rootObject(), names);
        }
        return cut;
    }
};

TEST_P(PopoverLanguagesTest, CutsNoTextThatIsNotANameWhateverARowHasToSay) {
    appearance.become({.reducedMotion = true, .textScale = textScale()});
    install("bibata-modern-classic");
    world.start();
    world.publishVersion("1.4.0");
    std::set<std::string> names;
    for (const auto& theme : world.viewModel->themes()) {
        names.insert(theme.name);
        names.insert(theme.author);
        names.insert(theme.author + " \xC2\xB7 " + theme.license);
    }
    const auto downloads = [this](const char* id, const char* status) {
        world.changeRow(id, [status](auto& row) {
            row.isDownloading = true;
            row.downloadStatus = status;
            row.downloadProgress = 0.4;
        });
    };
    world.changeRow("bibata-modern-ice", [](auto& row) { row.downloadError = "HTTP 404"; });
    downloads("bibata-modern-amber", "Downloading 100%");
    downloads("bibata-modern-classic-right", "Extracting...");
    downloads("bibata-modern-ice-right", "Connecting...");
    downloads("bibata-original-classic", "");
    world.changeRow("bibata-original-ice", [](auto& row) {
        row.isDownloaded = true;
        row.isApplying = true;
    });
    show();
    EXPECT_THAT(cut(names), IsEmpty());
    for (int row = 0; row < 10; ++row) {
        press(Qt::Key_Down);
        EXPECT_THAT(cut(names), IsEmpty()) << "row " << row;
    }
}

TEST_P(PopoverLanguagesTest, CutsNoSentenceAboutTheSession) {
    appearance.become({.reducedMotion = true, .textScale = textScale()});
    for (const auto session :
         {PopoverModel::Session::pointerFollowsSetting, PopoverModel::Session::pointerCannotChange}) {
        views.reset();
        show(session);
        std::set<std::string> names;
        for (const auto& theme : world.viewModel->themes()) {
            names.insert(theme.name);
            names.insert(theme.author + " \xC2\xB7 " + theme.license);
        }
        EXPECT_THAT(cut(names), IsEmpty());
    }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<std::string_view, double>>& info) {
    return std::string(std::get<0>(info.param)) + (std::get<1>(info.param) > 1 ? "At200" : "At100");
}

INSTANTIATE_TEST_SUITE_P(Languages, PopoverLanguagesTest,
                         testing::Combine(testing::ValuesIn(languages), testing::Values(1.0, 2.0)), nameOf);

struct TranslationsTest : testing::Test {
    ~TranslationsTest() override { QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto); }
};

template <typename Texts>
void expectAll(const QTranslator& translator, const Texts& texts) {
    for (const auto text : texts) {
        const auto words = translator.translate("Pintle", std::string(text).c_str());
        EXPECT_FALSE(words.isEmpty()) << translator.language().toStdString() << ": " << text;
    }
}

TEST_F(TranslationsTest, EveryTextOfTheModelsIsInEveryLanguage) {
    for (const auto language : languages) {
        const auto translator = installTranslation({QString::fromStdString(std::string(language))});
        ASSERT_NE(translator, nullptr) << language;
        expectAll(*translator, popover_text::all);
        expectAll(*translator, row_text::all);
        expectAll(*translator, settings_text::all);
        expectAll(*translator, about_text::all);
        expectAll(*translator, alert_text::all);
        expectAll(*translator, error_text::all);
        expectAll(*translator, announcement_text::all);
    }
}

TEST_F(TranslationsTest, EnglishShowsTheTextsToTheLetter) {
    EXPECT_EQ(installTranslation({"en-GB", "de-DE"}), nullptr);
    EXPECT_EQ(translated(UserText(popover_text::update, "1.4.0")), "Update 1.4.0");
    EXPECT_EQ(translated(row_text::error), "Error - Tap to retry");
}

TEST_F(TranslationsTest, WhatIsNotOursStaysAsItIs) {
    const auto german = installTranslation({"de-DE"});
    EXPECT_EQ(translated(UserText::verbatim("Left")), "Left");
    EXPECT_EQ(translated(UserText(settings_text::remove, "Cancel")), "Cancel entfernen");
    EXPECT_EQ(translated(alertText("Pintle 1.4.0 is available")),
              QString::fromUtf8("Pintle 1.4.0 ist verf\xC3\xBCgbar"));
}

TEST_F(TranslationsTest, ArabicReadsFromTheRight) {
    const auto arabic = installTranslation({"ar-EG"});
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    const auto german = installTranslation({"de-DE"});
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::LeftToRight);
}

}  // namespace
}  // namespace pintle
