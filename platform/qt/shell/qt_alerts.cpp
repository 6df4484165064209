#include "platform/qt/shell/qt_alerts.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

#include "base/lifetime.h"
#include "platform/qt/shell/window_host.h"

namespace pintle {
namespace {

class QtAlerts : public Alerts {
  public:
    QtAlerts(ShellViews& views, MainQueue& queue, const ShellDesktop& desktop)
        : views_(views), queue_(queue), desktop_(desktop) {}

    void runModal(const Alert& alert, std::function<void(int button)> answered) override {
        waiting_.push_back({alert, std::move(answered)});
        if (waiting_.size() > 1) return;
        // The answer to one alert may ask the next, while nothing has the keyboard yet.
        if (!asker_) asker_ = QGuiApplication::focusWindow();
        showFirst();
    }

  private:
    struct Question {
        Alert alert;
        std::function<void(int)> answered;
    };

    void showFirst() {
        auto* const view =
            views_.alert(waiting_.front().alert, lifetime_.weakly([this](int button) { answer(button); }));
        if (!view) return answer(lastButton());
        view->setFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
        view->setModality(Qt::ApplicationModal);
        view->setTitle(QStringLiteral("Pintle"));
        view->setMinimumSize(view->size());
        view->setMaximumSize(view->size());
        if (const auto* screen = QGuiApplication::screenAt(QCursor::pos());
            screen || (screen = QGuiApplication::primaryScreen())) {
            QRect frame(QPoint(), view->size());
            frame.moveCenter(screen->availableGeometry().center());
            view->setPosition(frame.topLeft());
        }
        host_.emplace(*view, desktop_, [this] { answer(lastButton()); });
        host_->showInFront();
    }
    int lastButton() const {
        return std::max<int>(static_cast<int>(waiting_.front().alert.buttons.size()) - 1, 0);
    }
    /// May be called by the host itself, which must live until that call is over.
    void answer(int button) {
        if (std::exchange(answering_, true)) return;
        if (host_) host_->hide();
        queue_.post(lifetime_.weakly([this, button] {
            host_.reset();
            answering_ = false;
            const Question question = std::move(waiting_.front());
            waiting_.pop_front();
            // The answer may ask again; what waited longer is shown first.
            if (!waiting_.empty()) showFirst();
            question.answered(button);
            if (waiting_.empty()) returnKeyboard();
        }));
    }

    void returnKeyboard() {
        auto* const asker = std::exchange(asker_, nullptr).data();
        if (!asker || !asker->isVisible()) return;
        asker->requestActivate();
        if (desktop_.activate) desktop_.activate(asker->winId());
    }

    ShellViews& views_;
    MainQueue& queue_;
    const ShellDesktop& desktop_;
    std::deque<Question> waiting_;
    bool answering_ = false;
    /// What had the keyboard before the first of the alerts that are up.
    QPointer<QWindow> asker_;
    std::optional<shell::WindowHost> host_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<Alerts> makeQtAlerts(ShellViews& views, MainQueue& queue, const ShellDesktop& desktop) {
    return std::make_unique<QtAlerts>(views, queue, desktop);
}

}  // namespace pintle
