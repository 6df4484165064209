#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <functional>

#include "settings/notification_names.h"
#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

struct Spoken {
    QAccessible::Role role;
    std::string name;
    std::string description;
    bool checked = false;
    bool focusable = false;
};

constexpr auto classic = "bibata-modern-classic";

struct PopoverViewTest : PopoverWorld {
    /// What shows the mark of the keyboard's focus.
    std::string ringed() const {
        auto* const item = view->activeFocusItem();
        return item && item->property("visualFocus").toBool() ? focused() : std::string();
    }
    static void walk(QAccessibleInterface* at, std::vector<Spoken>& all) {
        if (at == nullptr || at->state().invisible) return;
        if (const auto name = at->text(QAccessible::Name); !name.isEmpty())
            all.push_back({at->role(), name.toStdString(), at->text(QAccessible::Description).toStdString(),
                           at->state().checked != 0, at->state().focusable != 0});
        for (int child = 0; child < at->childCount(); ++child) walk(at->child(child), all);
    }
    std::vector<Spoken> spoken() const {
        std::vector<Spoken> all;
        walk(QAccessible::queryAccessibleInterface(view), all);
        return all;
    }
    std::optional<Spoken> find(QAccessible::Role role, const std::string& name) const {
        for (const auto& one : spoken())
            if (one.role == role && one.name == name) return one;
        return std::nullopt;
    }
};

TEST_F(PopoverViewTest, OpensInTheListWithTheActiveThemeInView) {
    install(ModelWorld::banana);
    world.start();
    world.applyNow(ModelWorld::banana);
    show();
    EXPECT_EQ(focused(), "Themes");
    EXPECT_EQ(ringed(), "");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Banana");
    EXPECT_EQ(ringed(), "Banana");
}

TEST_F(PopoverViewTest, NoKeyActsOnARowThatIsNotMarked) {
    install(ModelWorld::banana);
    world.start();
    world.applyNow(ModelWorld::banana);
    show();
    world.log.systemLines.clear();
    for (const auto key : {Qt::Key_Delete, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) press(key);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(ModelWorld::banana).isDownloaded);
    EXPECT_FALSE(world.log.has("[UI] BUTTON ACTION FIRED for theme: Banana"));
}

TEST_F(PopoverViewTest, APressWithTheMouseTakesTheMarkAway) {
    install(classic);
    show();
    press(Qt::Key_Down);
    EXPECT_EQ(ringed(), "Bibata Modern Classic");
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(100, 88 + 52 + 26));
    settle();
    EXPECT_EQ(ringed(), "");
    press(Qt::Key_Delete);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(classic).isDownloaded);
    press(Qt::Key_Down);
    EXPECT_EQ(ringed(), "Bibata Modern Ice");
}

TEST_F(PopoverViewTest, WithReducedMotionTheMarkOfARowChangesAtOnce) {
    appearance.become({.reducedMotion = true});
    install(ModelWorld::ice);
    show();
    world.applyNow(ModelWorld::ice);
    settle();
    int checks = 0;
    const std::function<void(const QQuickItem*)> look = [&](const QQuickItem* at) {
        const auto glyph = at->property("glyph").toString();
        const bool isMark = glyph == "circle" || glyph == "check-disc";
        EXPECT_TRUE(!isMark || at->opacity() == 0 || at->opacity() == 1) << glyph.toStdString();
        checks += glyph == "check-disc" && at->opacity() == 1;
        for (const auto* child : at->childItems()) look(child);
    };
    look(item("themeList"));
    EXPECT_EQ(checks, 1);
}

TEST_F(PopoverViewTest, CopyTakesTheWholeErrorOfTheMarkedRow) {
    show();
    world.changeRow("bibata-modern-classic", [](auto& row) { row.downloadError = "HTTP 404"; });
    settle();
    press(Qt::Key_C, "c", Qt::ControlModifier);
    EXPECT_NE(QGuiApplication::clipboard()->text(), "HTTP 404") << "no row is marked";
    press(Qt::Key_Down);
    press(Qt::Key_C, "c", Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "HTTP 404");
}

TEST_F(PopoverViewTest, TabMarksTheRowThatItComesTo) {
    show();
    for (int stop = 0; stop < 8; ++stop) press(Qt::Key_Tab);
    EXPECT_EQ(ringed(), "Bibata Modern Classic");
}

TEST_F(PopoverViewTest, AMarkThatWasScrolledAwayIsBroughtBackBeforeItIsActedOn) {
    install(classic);
    show();
    press(Qt::Key_Down);
    auto* const list = view->rootObject()->findChild<QQuickItem*>("themeList");
    ASSERT_NE(list, nullptr);
    list->setProperty("contentY", 1000);
    settle();
    press(Qt::Key_Delete);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(classic).isDownloaded);
    EXPECT_EQ(list->property("contentY").toDouble(), 0);
    press(Qt::Key_Delete);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(classic).isDownloaded);
}

TEST_F(PopoverViewTest, AControlThatHasTheKeyboardUnseenShowsItBeforeItActs) {
    show();
    press(Qt::Key_Tab);
    EXPECT_EQ(ringed(), "Cursor Size");
    // As a window does that comes back to the front.
    view->activeFocusItem()->setProperty("focusReason", Qt::ActiveWindowFocusReason);
    EXPECT_EQ(ringed(), "");
    press(Qt::Key_Right);
    EXPECT_EQ(ringed(), "Cursor Size");
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.0);
    press(Qt::Key_Right);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.05);
}

TEST_F(PopoverViewTest, TabGoesFromTheHeaderThroughFilterAndListToTheFooter) {
    show();
    std::vector<std::string> stops;
    for (int stop = 0; stop < 8; ++stop) {
        press(Qt::Key_Tab);
        stops.push_back(focused());
    }
    EXPECT_THAT(stops, ElementsAre("Cursor Size", "System Default", "Reset", "Settings", "About Pintle",
                                   "Quit Pintle", "All", "Bibata Modern Classic"));
}

TEST_F(PopoverViewTest, ArrowsMoveInTheListAndEnterTapsTheRow) {
    show();
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Bibata Modern Classic");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Bibata Modern Ice");
    world.log.systemLines.clear();
    press(Qt::Key_Return);
    EXPECT_TRUE(world.log.has("[UI] BUTTON ACTION FIRED for theme: Bibata Modern Ice"));
}

TEST_F(PopoverViewTest, TheLastRowIsReachedByEndAndTheFirstByHome) {
    show();
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Lilith");
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), "Bibata Modern Classic");
}

TEST_F(PopoverViewTest, DeleteDeletesADownloadedThemeOnly) {
    install(ModelWorld::ice);
    show();
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    world.scheduler.runUntilIdle();
    EXPECT_TRUE(world.theme(ModelWorld::ice).isDownloaded);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    world.scheduler.runUntilIdle();
    EXPECT_FALSE(world.theme(ModelWorld::ice).isDownloaded);
}

TEST_F(PopoverViewTest, ArrowsChooseInTheFilter) {
    show();
    for (int stop = 0; stop < 12 && focused() != "All"; ++stop) press(Qt::Key_Tab);
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Universal");
    EXPECT_EQ(world.viewModel->selectedFilter(), CursorHandedness::universal);
    const auto universal = find(QAccessible::RadioButton, "Universal");
    const auto all = find(QAccessible::RadioButton, "All");
    ASSERT_TRUE(universal && all);
    EXPECT_TRUE(universal->checked);
    EXPECT_FALSE(all->checked);
}

TEST_F(PopoverViewTest, ArrowsMoveTheSliderByOneStep) {
    show();
    press(Qt::Key_Tab);
    press(Qt::Key_Right);
    EXPECT_DOUBLE_EQ(world.settings.cursorScale(), 1.05);
    EXPECT_EQ(find(QAccessible::Slider, "Cursor Size")->description, "105%");
}

TEST_F(PopoverViewTest, EscapeAsksTheWindowToClose) {
    show();
    press(Qt::Key_Escape);
    EXPECT_FALSE(view->isVisible());
}

TEST_F(PopoverViewTest, EnterPressesAButton) {
    show();
    int asked = 0;
    const auto observer = world.notifications.observe(std::string(notification::openAboutRequest),
                                                      [&](const auto&) { ++asked; });
    for (int stop = 0; stop < 12 && focused() != "About Pintle"; ++stop) press(Qt::Key_Tab);
    press(Qt::Key_Return);
    press(Qt::Key_Space);
    EXPECT_EQ(asked, 2);
}

TEST_F(PopoverViewTest, GivesAssistiveTechnologyTheNameRoleAndStateOfEverything) {
    install(ModelWorld::ice);
    world.start();
    world.applyNow(ModelWorld::ice);
    world.publishVersion("9.9.9");
    show();
    for (const char* button :
         {"Settings", "About Pintle", "Quit Pintle", "System Default", "Reset", "Update 9.9.9"})
        EXPECT_TRUE(find(QAccessible::Button, button)) << button;
    EXPECT_EQ(find(QAccessible::Button, "Reset")->description, "Cursor size back to 100%");
    EXPECT_TRUE(find(QAccessible::List, "Themes"));
    const auto all = find(QAccessible::RadioButton, "All");
    ASSERT_TRUE(all);
    EXPECT_TRUE(all->checked);
    const auto row = find(QAccessible::ListItem, "Bibata Modern Ice");
    ASSERT_TRUE(row);
    EXPECT_TRUE(row->checked);
    EXPECT_EQ(row->description, "Abdulkaiz Khatri, GPL-3.0, Right");
    EXPECT_FALSE(find(QAccessible::ListItem, "Bibata Modern Amber")->checked);
    EXPECT_EQ(find(QAccessible::ListItem, "Bibata Modern Amber")->description,
              "Abdulkaiz Khatri, GPL-3.0, Right, Click to download");
}

TEST_F(PopoverViewTest, ALongVersionLeavesLogoAndNameFree) {
    world.start();
    world.publishVersion(std::string(60, '9').c_str());
    show();
    const auto rectOf = [&](QAccessible::Role role, const std::string& start) {
        QRect found;
        const std::function<void(QAccessibleInterface*)> look = [&](QAccessibleInterface* at) {
            if (at == nullptr || at->state().invisible) return;
            if (at->role() == role && at->text(QAccessible::Name).toStdString().starts_with(start))
                found = at->rect();
            for (int child = 0; child < at->childCount(); ++child) look(at->child(child));
        };
        look(QAccessible::queryAccessibleInterface(view));
        return found;
    };
    const auto update = rectOf(QAccessible::Button, "Update 99");
    const auto title = rectOf(QAccessible::Heading, "Pintle");
    ASSERT_TRUE(update.isValid() && title.isValid());
    EXPECT_GT(update.left(), title.right());
    EXPECT_LT(update.right(), rectOf(QAccessible::Button, "Settings").left());
    EXPECT_GE(title.width(), 36);
}

TEST_F(PopoverViewTest, ADownloadIsAProgressBarNamedLikeItsTheme) {
    show();
    EXPECT_FALSE(find(QAccessible::ProgressBar, "Bibata Modern Ice"));
    world.changeRow(ModelWorld::ice, [](auto& row) {
        row.isDownloading = true;
        row.downloadStatus = "Downloading 40%";
        row.downloadProgress = 0.4;
    });
    settle();
    ASSERT_TRUE(find(QAccessible::ProgressBar, "Bibata Modern Ice"));
    EXPECT_EQ(find(QAccessible::ProgressBar, "Bibata Modern Ice")->description, "40%");
}

TEST_F(PopoverViewTest, SaysWhereThePointerCannotChangeAndOffersNoFooter) {
    show(PopoverModel::Session::pointerCannotChange);
    EXPECT_TRUE(find(QAccessible::AlertMessage, "Pintle cannot change the pointer in this kind of session."));
    std::vector<std::string> stops;
    for (int stop = 0; stop < 6; ++stop) {
        press(Qt::Key_Tab);
        stops.push_back(focused());
    }
    EXPECT_THAT(stops, Not(Contains("System Default")));
}

TEST_F(PopoverViewTest, KeepsEveryControlAtLargeTextAndInASmallWindow) {
    appearance.become({.textScale = 2});
    show();
    view->resize(340, 300);
    settle();
    for (const char* name : {"Settings", "Reset", "System Default"}) {
        EXPECT_TRUE(find(QAccessible::Button, name)) << name;
    }
    EXPECT_TRUE(find(QAccessible::RadioButton, "Left"));
}

TEST_F(PopoverViewTest, AtLargeTextTheFilterStaysInSightWithAThemeInUse) {
    install(ModelWorld::banana);
    world.start();
    world.applyNow(ModelWorld::banana);
    appearance.become({.textScale = 2});
    show();
    const auto* const list = view->rootObject()->findChild<QQuickItem*>("themeList");
    EXPECT_GE(list->height(), 180);
    for (auto* each : view->rootObject()->findChildren<QQuickItem*>())
        if (each->property("text").toString() == "Universal") {
            const auto place = each->mapRectToScene(QRectF(0, 0, each->width(), each->height()));
            EXPECT_TRUE(QRectF(0, 0, 340, 520).contains(place));
            EXPECT_LT(place.bottom(), list->mapToScene({}).y());
        }
}

TEST_F(PopoverViewTest, TheFooterIs88High) {
    show();
    const auto* const list = view->rootObject()->findChild<QQuickItem*>("themeList");
    EXPECT_EQ(list->y() + list->height(), 520 - 88);
}

TEST_F(PopoverViewTest, TheShadowNeedsACompositor) {
    show();
    EXPECT_TRUE(views->popoverShape().shadow.isNull());
    views->setComposited(true);
    EXPECT_FALSE(views->popoverShape().shadow.isNull());
    EXPECT_EQ(view->color().alpha(), 0);
    views->setComposited(false);
    EXPECT_EQ(view->color().alpha(), 255);
}

}  // namespace
}  // namespace pintle
