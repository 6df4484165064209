#include <QElapsedTimer>
#include <QImage>

#include "app/quick/strip_images.h"
#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

struct StripViewTest : PopoverWorld {
    /// A theme of an arrow and a busy cursor of `frames` frames that last 30 ms.
    void write(const char* id, int frames) {
        XCursorBuilder busy;
        for (int i = 0; i < frames; ++i)
            busy.image({.size = 32, .delay = 30, .colour = 0xFF204060u + 0x200000u * (i % 4)});
        writeFile(world.cursorsOf(id) / "left_ptr", XCursorBuilder().image({.size = 32}).bytes());
        writeFile(world.cursorsOf(id) / "watch", busy.bytes());
    }
    void goTo(const char* name) {
        type(name);
        press(Qt::Key_Escape);
        world.scheduler.advance(StripDisplay::rest);
        world.scheduler.runUntilIdle();
        settle();
    }
    static void collect(QQuickItem* at, std::vector<QQuickItem*>& found) {
        if (at->objectName() == "stripCursor") found.push_back(at);
        for (auto* child : at->childItems()) collect(child, found);
    }
    std::vector<QQuickItem*> cursors() const {
        std::vector<QQuickItem*> found;
        collect(view->rootObject(), found);
        return found;
    }
    /// Whether any frame changes within ten times its length.
    bool moves() const {
        const auto shown = cursors();
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 300) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            for (const auto* each : shown)
                if (each->property("frame").toInt() != 0) return true;
        }
        return false;
    }
};

TEST_F(StripViewTest, StandsInTheSecondLineAndMoves) {
    write(ModelWorld::banana, 4);
    show();
    press(Qt::Key_Home);
    const auto height = view->activeFocusItem()->height();
    goTo("banana");
    EXPECT_EQ(cursors().size(), 2u);
    EXPECT_EQ(view->activeFocusItem()->height(), height);
    EXPECT_TRUE(moves());
}

TEST_F(StripViewTest, StandsStillWithReducedMotion) {
    write(ModelWorld::banana, 4);
    appearance.become({.reducedMotion = true});
    show();
    goTo("banana");
    EXPECT_EQ(cursors().size(), 2u);
    EXPECT_FALSE(moves());
}

TEST_F(StripViewTest, GoesWithTheRowsFocusAndWithThePopover) {
    write(ModelWorld::banana, 4);
    show();
    goTo("banana");
    press(Qt::Key_Down);
    EXPECT_TRUE(cursors().empty());
    press(Qt::Key_Up);
    world.scheduler.advance(StripDisplay::rest);
    world.scheduler.runUntilIdle();
    settle();
    EXPECT_EQ(cursors().size(), 2u);
    view->hide();
    views->popoverDidHide();
    settle();
    EXPECT_TRUE(cursors().empty());
}

TEST_F(StripViewTest, ARowThatIsNotOnDiskKeepsItsSecondLine) {
    show();
    goTo("banana");
    EXPECT_TRUE(cursors().empty());
}

TEST_F(StripViewTest, AnImageHasASquareForEachFrame) {
    write(ModelWorld::banana, 4);
    world.start();
    PopoverModel popover({*world.viewModel, world.updates, world.settings, world.notifications,
                          world.scheduler.mainQueue(), world.application, world.log});
    StripImages strips(popover);
    const auto provider = strips.makeProvider();
    strips.attend(ModelWorld::banana);
    world.scheduler.advance(StripDisplay::rest);
    world.scheduler.runUntilIdle();
    const auto list = strips.cursors();
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(list[1].toMap()["interval"], 30);
    const auto address = list[1].toMap()["source"].toString().mid(QString("image://strips/").size());
    EXPECT_EQ(provider->requestImage(address, nullptr, QSize(18, 72)).size(), QSize(18, 72));
    EXPECT_NE(provider->requestImage(address, nullptr, QSize(18, 72)).pixelColor(9, 9),
              provider->requestImage(address, nullptr, QSize(18, 72)).pixelColor(9, 27));
    strips.leave(ModelWorld::banana);
    EXPECT_TRUE(provider->requestImage(address, nullptr, QSize(18, 72)).isNull());
    EXPECT_TRUE(provider->requestImage("nothing", nullptr, QSize()).isNull());
}

}  // namespace
}  // namespace pintle
