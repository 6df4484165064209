#include "app/quick/symbol_icons.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QIcon>
#include <QString>
#include <string_view>
#include <utility>

#include "app/symbols.h"

namespace pintle {
namespace {

TEST(SymbolIcons, HasADrawingForEverySymbolThatTheModelsName) {
    for (const auto symbol : symbol::all) {
        const auto icon = iconOfSymbol(symbol);
        ASSERT_FALSE(icon.empty()) << symbol;
        const auto file =
            QString(":/pintle/icons/%1.svg").arg(QString::fromUtf8(icon.data(), qsizetype(icon.size())));
        EXPECT_TRUE(QFile::exists(file)) << file.toStdString();
    }
}

TEST(SymbolIcons, TheModelsNameTheSymbolsOfTheSystemToTheLetter) {
    const std::pair<std::string_view, std::string_view> names[] = {
        {symbol::logo, "cursorarrow.motionlines"},
        {symbol::update, "arrow.down.circle.fill"},
        {symbol::power, "power"},
        {symbol::filterAll, "person.2.fill"},
        {symbol::handUniversal, "hand.raised.fill"},
        {symbol::handRight, "hand.point.right.fill"},
        {symbol::handLeft, "hand.point.left.fill"},
        {symbol::active, "checkmark.circle.fill"},
        {symbol::notActive, "circle"},
        {symbol::download, "arrow.down.to.line"},
        {symbol::warning, "exclamationmark.triangle"},
        {symbol::animated, "timelapse"},
        {symbol::trash, "trash.fill"},
        {symbol::scale, "arrow.down.left.and.arrow.up.right"},
        {symbol::launchAtLogin, "arrow.right.circle"},
        {symbol::restoreOnQuit, "arrow.uturn.backward.circle"},
        {symbol::fullscreen, "rectangle.on.rectangle"},
        {symbol::missingTypes, "cursorarrow.rays"},
        {symbol::screenSharing, "dot.radiowaves.left.and.right"},
        {symbol::interfaceStyle, "square.stack.3d.forward.dottedline"},
        {symbol::size, "arrow.up.left.and.arrow.down.right"},
        {symbol::showField, "plus.circle.fill"},
        {symbol::hideField, "minus.circle.fill"},
        {symbol::reset, "arrow.counterclockwise.circle"},
        {symbol::features, "sparkles"},
        {symbol::pointer, "cursorarrow"},
        {symbol::autoApply, "arrow.clockwise"},
        {symbol::menuBar, "menubar.rectangle"},
    };
    for (const auto& [named, literal] : names) EXPECT_EQ(named, literal);
}

TEST(SymbolIcons, HasNoDrawingForAnUnknownSymbol) {
    EXPECT_EQ(iconOfSymbol("no.such.symbol"), "");
    EXPECT_EQ(iconOfSymbol(""), "");
}

}  // namespace
}  // namespace pintle
