// Modal questions and messages. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace pintle {

enum class AlertStyle { informational, warning };

struct Alert {
    AlertStyle style = AlertStyle::informational;
    std::string message;
    std::string informativeText;
    /// From the first, default one; none: the desktop's single default button.
    std::vector<std::string> buttons;
    friend bool operator==(const Alert&, const Alert&) = default;
};

class Alerts {
  public:
    virtual ~Alerts() = default;
    /// Shows the alert in front of everything and returns. `answered` runs once, on the main queue, with the
    /// number of the button counted from 0; closing the alert counts as its last button. It does not run when
    /// the program ends before. Alerts asked for meanwhile wait their turn.
    virtual void runModal(const Alert& alert, std::function<void(int button)> answered) = 0;
};

}  // namespace pintle
