// A menu as a value: built by the shell's models, translated once by each desktop. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace pintle {

struct MenuItem {
    /// For people; empty for a separator.
    std::string title;
    /// One character, pressed together with the desktop's command modifier while the menu is open; empty:
    /// none.
    std::string keyEquivalent;
    std::function<void()> action;
    bool isSeparator = false;
};

struct Menu {
    std::vector<MenuItem> items;
};

}  // namespace pintle
