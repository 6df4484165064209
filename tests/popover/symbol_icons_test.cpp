#include "app/quick/symbol_icons.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QIcon>
#include <QString>

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

TEST(SymbolIcons, HasNoDrawingForAnUnknownSymbol) {
    EXPECT_EQ(iconOfSymbol("no.such.symbol"), "");
    EXPECT_EQ(iconOfSymbol(""), "");
}

}  // namespace
}  // namespace pintle
