#include "app/quick/theme_drawings.h"

#include <gtest/gtest.h>

namespace pintle {
namespace {

ThemeDrawing drawn(std::string_view name, CursorHandedness hand = CursorHandedness::rightHanded) {
    return themeDrawing(name, hand);
}

QImage painted(std::string_view name, CursorHandedness hand = CursorHandedness::rightHanded) {
    return ThemeDrawings::paint(drawn(name, hand), QSize(48, 48));
}

QImage asked(const QString& address, const QSize& size) {
    const auto start = QString("image://%1/").arg(ThemeDrawings::providerName);
    return ThemeDrawings::makeProvider()->requestImage(
        address.startsWith(start) ? address.mid(start.size()) : address, nullptr, size);
}

constexpr QPoint body(19, 19);

TEST(ThemeDrawingsTest, FillsThePointerWithTheColour) {
    EXPECT_EQ(painted("Bibata Modern Amber").pixelColor(body), QColor(0xF5, 0x9A, 0x0C));
    EXPECT_EQ(painted("Bibata Original Ice").pixelColor(body), QColor(Qt::white));
    EXPECT_EQ(painted("Bibata Extra Modern").pixelColor(body).alpha(), 0);
}

TEST(ThemeDrawingsTest, MirrorsThePointerForTheLeftHand) {
    const auto right = painted("Bibata Modern Amber");
    EXPECT_EQ(painted("Bibata Modern Amber", CursorHandedness::leftHanded), right.mirrored(true, false));
}

TEST(ThemeDrawingsTest, StaysInsideItsSquareWhateverItsCorners) {
    for (const char* name : {"Modern White", "Original White", "White"}) {
        const auto image = painted(name);
        for (int at = 0; at < 48; ++at)
            for (const QPoint edge : {QPoint(at, 0), QPoint(0, at), QPoint(at, 47), QPoint(47, at)})
                EXPECT_LT(image.pixelColor(edge).alpha(), 64) << name << " " << edge.x() << " " << edge.y();
    }
}

TEST(ThemeDrawingsTest, RoundedIsNotAngular) { EXPECT_NE(painted("Modern Ice"), painted("Original Ice")); }

TEST(ThemeDrawingsTest, IsFoundAgainByItsAddressAtAnySize) {
    for (const char* name : {"Bibata Modern Ice", "Bibata Zebra Original", "Bibata Rainbow Modern",
                             "Bibata Extra Original", "Phinger Dark"}) {
        const auto drawing = drawn(name, CursorHandedness::leftHanded);
        EXPECT_EQ(asked(ThemeDrawings::address(drawing), QSize(33, 33)),
                  ThemeDrawings::paint(drawing, QSize(33, 33)))
            << name;
    }
}

TEST(ThemeDrawingsTest, HasNoAddressForLettersAndAnswersNoneThatIsNotItsOwn) {
    EXPECT_EQ(ThemeDrawings::address(drawn("Lyra Cursors")), "");
    for (const char* address : {"", "0-1-s-0", "0-1-s-0-", "7-1-s-0-fff", "0-9-s-0-fff", "0-1-s-x-fff",
                                "0-1-s-0-zz", "0-1-s-0-1.1.1.1.1.1.1.1.1.1"})
        EXPECT_TRUE(asked(address, QSize(8, 8)).isNull()) << address;
}

}  // namespace
}  // namespace pintle
