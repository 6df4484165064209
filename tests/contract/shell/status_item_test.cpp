// The tray icon in a panel that takes windows in, and its picture.
#include <QMenu>
#include <QPainter>

#include "platform/qt/shell/template_icon.h"
#include "tests/contract/shell/shell_fixture.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ShellTest, WithoutATrayTheItemWaitsAndHasItsButton) {
    makeItem();
    runFor(std::chrono::milliseconds(1300));
    EXPECT_FALSE(bar->isAvailable());
    EXPECT_TRUE(item->hasButton());
    EXPECT_FALSE(item->buttonFrame());
    item->performClick();
    EXPECT_EQ(clicks.size(), 1u);
}

TEST_F(ShellTest, ATrayThatAppearsLaterIsFound) {
    makeItem();
    EXPECT_FALSE(item->buttonFrame());
    startPanel();
    ASSERT_TRUE(isInPanel());
    EXPECT_TRUE(bar->isAvailable());
    const Rect frame = *item->buttonFrame();
    EXPECT_EQ(frame.size, (Size{22, 22}));
    EXPECT_EQ(frame.origin.y, 800 - 4 - 22);
}

TEST_F(ShellTest, APanelThatWasReplacedShowsTheItemAgainWithItsFrame) {
    makeItem();
    startPanel();
    ASSERT_TRUE(isInPanel());
    const Rect before = *item->buttonFrame();
    panel.reset();
    EXPECT_TRUE(until([this] { return !item->buttonFrame() && !bar->isAvailable(); }));
    startPanel();
    ASSERT_TRUE(isInPanel());
    EXPECT_TRUE(until([&] { return item->buttonFrame() == before; }));
    const QPoint icon = middleOfIcon();
    click(icon.x(), icon.y());
    EXPECT_TRUE(until([this] { return clicks.size() == 1; }));
}

TEST_F(ShellTest, AClickOnTheIconComesAfterItsOwnPressAndCarriesItsNumber) {
    makeItem();
    startPanel();
    ASSERT_TRUE(isInPanel());
    const QPoint icon = middleOfIcon();
    click(icon.x(), icon.y(), 1);
    ASSERT_TRUE(until([this] { return clicks.size() == 1; }));
    click(icon.x(), icon.y(), 3);
    ASSERT_TRUE(until([this] { return clicks.size() == 2; }));
    click(icon.x(), icon.y(), 2);
    ASSERT_TRUE(until([this] { return clicks.size() == 3; }));
    EXPECT_EQ(clicks[0], (StatusItemEvent{StatusItemEventType::leftMouseUp, 1}));
    EXPECT_EQ(clicks[1], (StatusItemEvent{StatusItemEventType::rightMouseUp, 2}));
    EXPECT_EQ(clicks[2], (StatusItemEvent{StatusItemEventType::other, 3}));
    EXPECT_THAT(events, ElementsAre("press", "click", "press", "click", "click"));
    ASSERT_EQ(pressed.size(), 2u);
    EXPECT_EQ(pressed[1].button, GlobalMouseDown::Button::right);
    EXPECT_EQ(pressed[1].press, 2u);
}

TEST_F(ShellTest, AButtonThatIsReleasedBesideTheIconIsNoClick) {
    makeItem();
    startPanel();
    ASSERT_TRUE(isInPanel());
    const QPoint icon = middleOfIcon();
    mouse("mousemove " + std::to_string(icon.x()) + " " + std::to_string(icon.y()) +
          " mousedown 1 mousemove 400 400 mouseup 1");
    EXPECT_TRUE(until([this] { return pressed.size() == 1; }));
    // A click after it is the first that comes.
    click(icon.x(), icon.y());
    ASSERT_TRUE(until([this] { return !clicks.empty(); }));
    EXPECT_THAT(clicks, ElementsAre(StatusItemEvent{StatusItemEventType::leftMouseUp, 2}));
}

TEST_F(ShellTest, AnAttachedMenuOpensUnderTheIconAndOutlivesItsDetaching) {
    makeItem();
    startPanel();
    ASSERT_TRUE(isInPanel());
    int settings = 0;
    int quit = 0;
    const Menu menu{{{"Settings...", ",", [&] { ++settings; }, false},
                     {"", "", {}, true},
                     {"Quit Pintle", "q", [&] { ++quit; }, false}}};
    const auto open = [&] {
        item->attachMenu(menu);
        item->performClick();
        item->detachMenu();
        return until([] { return QApplication::activePopupWidget() != nullptr; });
    };
    const auto closed = [] { return until([] { return QApplication::activePopupWidget() == nullptr; }); };

    ASSERT_TRUE(open());
    const auto* const shown = QApplication::activePopupWidget();
    EXPECT_GE(shown->y(), 26);
    EXPECT_LE(shown->frameGeometry().right(), 1279);
    mouse("key Escape");
    EXPECT_TRUE(closed());

    ASSERT_TRUE(open());
    click(300, 600);
    EXPECT_TRUE(closed());

    ASSERT_TRUE(open());
    mouse("key Down Return");
    EXPECT_TRUE(closed());
    EXPECT_TRUE(until([&] { return settings == 1; }));

    ASSERT_TRUE(open());
    mouse("key ctrl+q");
    EXPECT_TRUE(closed());
    EXPECT_TRUE(until([&] { return quit == 1; }));

    const QPoint icon = middleOfIcon();
    click(icon.x(), icon.y(), 1);
    EXPECT_TRUE(until([this] { return clicks.size() == 1; }));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ShellTest, TheMenuHasTheDesktopsBrightnessAndNoColumnForMarks) {
    makeItem();
    startPanel();
    ASSERT_TRUE(isInPanel());
    for (const bool dark : {true, false}) {
        appearance.become({.dark = dark});
        item->attachMenu({{{"Settings...", ",", [] {}, false}}});
        item->performClick();
        item->detachMenu();
        ASSERT_TRUE(until([] { return QApplication::activePopupWidget() != nullptr; }));
        auto* const shown = QApplication::activePopupWidget();
        const QImage picture = shown->grab().toImage();
        const QColor ground = picture.pixelColor(8, picture.height() / 2);
        EXPECT_EQ(ground.lightness() < 128, dark);
        int first = 8;
        while (first < picture.width()) {
            bool isText = false;
            for (int down = 8; down < picture.height() - 8; ++down)
                isText |= std::abs(picture.pixelColor(first, down).lightness() - ground.lightness()) > 60;
            if (isText) break;
            ++first;
        }
        EXPECT_LT(first, 24);
        EXPECT_EQ(shown->font().pixelSize(), 13);
        shown->close();
    }
}

TEST_F(ShellTest, TheIconStandsOutFromALightAndFromADarkPanel) {
    for (const auto& panelColour : {std::pair("#202020", true), std::pair("#f0f0f0", false)}) {
        const auto* const background = panelColour.first;
        const bool isDark = panelColour.second;
        makeItem();
        startPanel(background);
        ASSERT_TRUE(isInPanel());
        std::optional<panels::Colours> ground;
        EXPECT_TRUE(until([&] {
            for (auto* const widget : QApplication::topLevelWidgets())
                if (widget->inherits("QSystemTrayIconSys")) ground = x.coloursOf(widget->winId());
            return ground && ground->dark == isDark;
        })) << background;
        item.reset();
        panel.reset();
        EXPECT_TRUE(until([this] { return !bar->isAvailable(); }));
    }
}

int inkOf(const QImage& picture, int x, int y) { return qAlpha(picture.pixel(x, y)); }

TEST(TrayIcon, HasLinesOnThePixelGridInEverySizeThatPanelsUse) {
    for (const int side : {16, 20, 22, 24, 32, 40, 44, 48}) {
        const QImage picture = shell::templatePicture(side, Qt::white);
        ASSERT_EQ(picture.size(), QSize(side, side));
        // The upright and the level line: no pixel of theirs is half covered.
        int full = 0;
        for (int x = 0; x < side; ++x)
            for (int y = 0; y < side * 5 / 24; ++y) {
                if (x < side * 5 / 16) continue;
                const int ink = inkOf(picture, x, y);
                EXPECT_TRUE(ink == 0 || ink == 255) << side << ": " << x << ", " << y << " has " << ink;
                if (ink == 255) ++full;
                EXPECT_EQ(inkOf(picture, y, x) == 255, ink == 255) << side;
            }
        EXPECT_GE(full, side / 8) << side;
    }
}

TEST(TrayIcon, TakesTheColourItIsGivenAndFitsOddSizes) {
    for (const int side : {15, 17, 18, 23, 29, 64}) {
        const QImage picture = shell::templatePicture(side, QColor(10, 200, 30));
        EXPECT_EQ(picture.size(), QSize(side, side));
        int ink = 0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                if (inkOf(picture, x, y) == 255) {
                    ++ink;
                    EXPECT_EQ(picture.pixel(x, y), qRgb(10, 200, 30));
                }
        EXPECT_GT(ink, side / 2);
    }
}

}  // namespace
}  // namespace pintle
