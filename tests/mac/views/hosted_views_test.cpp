// The real views as the desktop's own windows hold them.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickView>
#include <algorithm>
#include <memory>

#include "app/about_window_model.h"
#include "app/quick/shell_views_quick.h"
#include "app/quick/window_views.h"
#include "app/root/native_views_qt.h"
#include "app/settings_window_model.h"
#include "platform/fake/fake_appearance.h"
#include "platform/fake/fake_login_item_service.h"
#include "settings/launch_agent_file.h"
#include "tests/app/model_world.h"

namespace pintle {
namespace {

/// One for the process, because one look is offered to all views of it; never ended.
struct HostedWorld {
    ModelWorld world;
    FakeAppearance appearance;
    std::optional<PopoverModel> popover;
    FakeLoginItemService loginItems;
    std::unique_ptr<LoginAgent> agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    LaunchAtLogin launchAtLogin{loginItems, *agent,   world.store,
                                world.log,  {{}, {}}, LoginAgentRole::fallback};
    std::optional<SettingsWindowModel> settings;
    Bundle bundle{.identifier = "com.pintle.app", .shortVersion = "0.1.0", .build = {}, .executable = {}};
    AboutWindowModel about{bundle, world.application, [] {}};
    WindowViews windows{{[this]() -> SettingsWindowModel& {
                             return settings.emplace(SettingsWindowModel::Dependencies{
                                 world.settings, world.store, launchAtLogin, world.notifications,
                                 *world.viewModel, world.alerts, world.application});
                         },
                         [this]() -> AboutWindowModel& { return about; }}};
    std::unique_ptr<ShellViewsQuick> views;
    std::unique_ptr<NativeViews> native;

    HostedWorld() {
        world.start();
        views = std::make_unique<ShellViewsQuick>(ShellViewsQuick::Dependencies{
            [this]() -> PopoverModel& {
                return popover.emplace(PopoverModel::Dependencies{
                    *world.viewModel, world.updates, world.settings, world.notifications,
                    world.scheduler.mainQueue(), world.application, world.log});
            },
            appearance,
            world.settings,
            [this](QQmlEngine& engine, WindowContent content) { return windows.makeWindow(engine, content); },
            {}});
        native = makeNativeViews(*views);
    }
};

class HostedViews : public testing::Test {
  protected:
    HostedViews() {
        world().world.settings.setGlassMode(false);
        world().appearance.become({});
    }
    static HostedWorld& world() {
        static auto* const it = new HostedWorld;
        return *it;
    }
    static QQuickItem& rootOf(QWindow* view) { return *qobject_cast<QQuickView*>(view)->rootObject(); }
    static QColor colourOf(const QQuickItem& item) { return item.property("color").value<QColor>(); }
    static QQuickItem& panel() { return *rootOf(world().views->popover()).findChild<QQuickItem*>("panel"); }
    /// The colours in which entry fields draw what is selected in them.
    static void selectedTextColours(const QQuickItem& item, std::vector<QColor>& colours) {
        if (item.inherits("QQuickTextInput"))
            colours.push_back(item.property("selectedTextColor").value<QColor>());
        for (const QQuickItem* child : item.childItems()) selectedTextColours(*child, colours);
    }
    /// Where the highest text of the page stands.
    static double topOfContent(const QQuickItem& page, const QQuickItem& item) {
        double top = page.height();
        for (const QQuickItem* child : item.childItems()) {
            if (!child->isVisible()) continue;
            if (child->inherits("QQuickText"))
                top = std::min(top, child->mapToItem(&page, QPointF(0, 0)).y());
            top = std::min(top, topOfContent(page, *child));
        }
        return top;
    }
};

TEST_F(HostedViews, TheFirstSectionOfEachWindowStandsBelowItsTitleStrip) {
    for (const auto content : {WindowContent::settings, WindowContent::about}) {
        const NativeView view = world().native->window(content);
        ASSERT_NE(view, nullptr);
        auto& page = rootOf(world().views->window(content));
        page.setSize({480, 700});
        for (const double strip : {44.0, 28.0}) {
            world().native->setTitleStrip(view, strip);
            QCoreApplication::processEvents();
            EXPECT_EQ(page.property("titleStrip").toDouble(), strip);
            const double top = topOfContent(page, page);
            EXPECT_GE(top, strip);
            EXPECT_LT(top, 200);
        }
    }
}

TEST_F(HostedViews, SelectedTextIsDrawnInTheGlassLook) {
    world().world.settings.setGlassMode(true);
    QWindow* const view = world().views->window(WindowContent::settings);
    ASSERT_NE(view, nullptr);
    QCoreApplication::processEvents();
    std::vector<QColor> colours;
    selectedTextColours(rootOf(view), colours);
    ASSERT_FALSE(colours.empty());
    for (const auto& colour : colours) EXPECT_EQ(colour.alpha(), 255);
}

TEST_F(HostedViews, ThePopoverDrawsNeitherShadowNorCornersNorEdge) {
    ASSERT_NE(world().views->popover(), nullptr);
    EXPECT_EQ(world().views->popoverShape().shadow, QMargins());
    EXPECT_EQ(world().views->popoverShape().cornerRadius, 0);
    EXPECT_EQ(rootOf(world().views->popover()).property("shadowed").toBool(), false);
    EXPECT_EQ(panel().property("radius").toDouble(), 0);
}

TEST_F(HostedViews, ThePopoverIsOpaqueUntilTheGlassLookLetsTheMaterialThrough) {
    ASSERT_NE(world().views->popover(), nullptr);
    EXPECT_EQ(world().native->popoverMaterial(), 0);
    EXPECT_EQ(colourOf(panel()).alpha(), 255);
    world().world.settings.setGlassMode(true);
    world().world.settings.setGlassOpacity(0.85);
    EXPECT_EQ(world().native->popoverMaterial(), 0.85);
    EXPECT_EQ(colourOf(panel()).alpha(), 0);
    EXPECT_EQ(qobject_cast<QQuickView*>(world().views->popover())->color().alpha(), 0);
    // More contrast puts an end to the glass look.
    world().appearance.become({.highContrast = true});
    EXPECT_EQ(world().native->popoverMaterial(), 0);
    EXPECT_EQ(colourOf(panel()).alpha(), 255);
}

TEST_F(HostedViews, WindowsLetTheirMaterialThroughUnlessContrastCounts) {
    for (const auto content : {WindowContent::settings, WindowContent::about}) {
        QWindow* const view = world().views->window(content);
        ASSERT_NE(view, nullptr);
        for (const bool glass : {false, true}) {
            world().world.settings.setGlassMode(glass);
            EXPECT_EQ(colourOf(rootOf(view)).alpha(), 0);
            EXPECT_EQ(qobject_cast<QQuickView*>(view)->color().alpha(), 0);
        }
        world().appearance.become({.highContrast = true});
        EXPECT_EQ(colourOf(rootOf(view)).alpha(), 255);
        world().appearance.become({});
    }
}

}  // namespace
}  // namespace pintle
