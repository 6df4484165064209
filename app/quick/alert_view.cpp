#include "app/quick/alert_view.h"

#include <utility>

#include "app/alert_focus.h"
#include "app/alert_texts.h"
#include "app/quick/translated.h"

namespace pintle {

void AlertView::show(const Alert& alert, std::function<void(int button)> chosen) {
    message_ = translated(alertText(alert.message));
    informativeText_ = translated(alertText(alert.informativeText));
    buttons_.clear();
    for (const auto& button : alert.buttons) buttons_.append(translated(button));
    if (buttons_.isEmpty()) buttons_.append(translated(alert_text::ok));
    warning_ = alert.style == AlertStyle::warning;
    destructive_ = isDestructive(alert);
    firstFocus_ = buttonWithKeyboard(alert);
    chosen_ = std::move(chosen);
    Q_EMIT changed();
}

void AlertView::choose(int button) {
    if (button < 0 || button >= buttons_.size()) return;
    if (const auto chosen = std::exchange(chosen_, nullptr)) chosen(button);
}

}  // namespace pintle
