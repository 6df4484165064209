// The settings window, the about window and the alert as the user meets them: real models on fakes, real
// views, drawn without a display.
#pragma once

#include <QAccessible>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/about_window_model.h"
#include "app/cursor_view_model.h"
#include "app/quick/view_look.h"
#include "app/quick/window_views.h"
#include "app/settings_window_model.h"
#include "platform/fake/fake_login_item_service.h"
#include "platform/fake/fake_shell.h"
#include "settings/launch_agent_file.h"
#include "tests/support/cursor_world.h"

namespace pintle {

/// The look of all views of the process.
inline ViewLook& sharedLook() {
    static ViewLook look;
    [[maybe_unused]] static const bool offered = [] {
        offerToViews(look);
        return true;
    }();
    return look;
}

/// The one engine of the process, to which that look belongs. Never ended: views of any test may look at it.
inline QQmlEngine& sharedEngine() {
    static auto* const engine = new QQmlEngine;
    return *engine;
}

struct WindowWorld {
    explicit WindowWorld(const ViewLook::Look& look, bool seesApplications = true)
        : settings({world.settings, world.store, launchAtLogin, world.notifications, viewModel, alerts,
                    application, seesApplications}) {
        sharedLook().setLook(look);
        world.scheduler.runUntilIdle();
    }
    ~WindowWorld() {
        views.forgetAlert();
        window.reset();
    }

    /// Makes a window and shows it; null when it cannot be made.
    QQuickView* show(WindowContent content, QSize size = {}) {
        window = views.makeWindow(engine, content);
        if (!window) return nullptr;
        if (!size.isEmpty()) window->resize(size);
        reveal(*window);
        return static_cast<QQuickView*>(window.get());
    }
    QQuickView* show(const Alert& alert) {
        auto* const view = views.alert(engine, alert, [this](int button) { chosen.push_back(button); });
        if (view) reveal(*view);
        return static_cast<QQuickView*>(view);
    }
    static void reveal(QWindow& view) {
        view.show();
        view.requestActivate();
        until([&] { return view.isActive() && view.isExposed(); });
    }

    /// Runs the event loop until `reached`; false when it does not get there in time.
    static bool until(const std::function<bool()>& reached, int milliseconds = 10'000) {
        QElapsedTimer clock;
        clock.start();
        while (!reached()) {
            if (clock.elapsed() > milliseconds) return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        return true;
    }

    CursorWorld world;
    ShellTranscript transcript;
    FakeAlerts alerts{transcript};
    FakeApplication application{transcript};
    FakeLoginItemService service;
    std::unique_ptr<LoginAgent> agent = makeLaunchAgentFile(world.directories.home, world.propertyLists);
    LaunchAtLogin launchAtLogin{service,
                                *agent,
                                world.store,
                                world.log,
                                {"/Applications/Pintle.app", "/Applications/Pintle"},
                                LoginAgentRole::fallback};
    FullReset fullReset{{world.settings, world.store, world.themeStore, world.work, world.pipeline,
                         world.applier, world.changer, world.log}};
    CursorViewModel viewModel{CursorViewModel::Dependencies{
        world.themes, world.themeStore, world.pipeline, world.downloads, world.removal, fullReset,
        world.store, world.scheduler.mainQueue(), world.scheduler.backgroundTasks(), world.hints, world.log}};
    SettingsWindowModel settings;
    Bundle bundle{.identifier = "com.pintle.app", .shortVersion = "0.1.0", .build = {}, .executable = {}};
    int dismissed = 0;
    AboutWindowModel about{bundle, application, [this] { ++dismissed; }};
    std::vector<int> chosen;
    QQmlEngine& engine = sharedEngine();
    WindowViews views{{[this]() -> SettingsWindowModel& { return settings; },
                       [this]() -> AboutWindowModel& { return about; }}};
    std::unique_ptr<QWindow> window;
};

/// What assistive programs read of a window, from the top.
struct AccessibleItem {
    QAccessible::Role role = QAccessible::NoRole;
    std::string name;
    std::string description;
    QAccessible::State state;
    /// Of the window.
    QRect place;
    QAccessibleInterface* interface = nullptr;
};

inline void collectAccessible(QAccessibleInterface* interface, QPoint origin,
                              std::vector<AccessibleItem>& items) {
    if (!interface || interface->state().invisible) return;
    items.push_back({interface->role(), interface->text(QAccessible::Name).toStdString(),
                     interface->text(QAccessible::Description).toStdString(), interface->state(),
                     interface->rect().translated(-origin), interface});
    for (int i = 0; i < interface->childCount(); ++i) collectAccessible(interface->child(i), origin, items);
}

inline std::vector<AccessibleItem> accessibleItemsOf(QQuickView& view) {
    std::vector<AccessibleItem> items;
    collectAccessible(QAccessible::queryAccessibleInterface(&view), view.position(), items);
    return items;
}

/// The first one of that name; its interface is null when there is none.
inline AccessibleItem accessibleNamed(QQuickView& view, const std::string& name,
                                      QAccessible::Role role = QAccessible::NoRole) {
    for (const auto& each : accessibleItemsOf(view))
        if (each.name == name && (role == QAccessible::NoRole || each.role == role)) return each;
    return {};
}

}  // namespace pintle
