// Which of an alert's buttons has the keyboard, and Return, when the alert comes up. Pure; any thread.
#pragma once

#include "platform/alerts.h"

namespace pintle {

/// Whether the first button does what cannot be undone: a warning that leaves a choice.
inline bool isDestructive(const Alert& alert) {
    return alert.style == AlertStyle::warning && alert.buttons.size() > 1;
}

/// Counted from 0. The default one; of a destructive alert the last one, which leaves everything as it is, so
/// that a Return meant for another window destroys nothing.
inline int buttonWithKeyboard(const Alert& alert) {
    return isDestructive(alert) ? static_cast<int>(alert.buttons.size()) - 1 : 0;
}

}  // namespace pintle
