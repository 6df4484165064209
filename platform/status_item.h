// The program's item in the menu bar or tray. Everything happens on the main thread; callbacks come from the
// main queue. Coordinates are global: points, y up.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/geometry.h"
#include "platform/menu.h"

namespace pintle {

/// The length that makes an item as wide as the bar is high.
inline constexpr double kSquareStatusItemLength = -2;

enum class StatusItemEventType { leftMouseUp, rightMouseUp, other };

struct StatusItemEvent {
    StatusItemEventType type = StatusItemEventType::other;
    /// The mouse press that this event belongs to, numbered as GlobalMouseDown::press; absent where the
    /// desktop does not report it.
    std::optional<std::uint64_t> press;
    friend bool operator==(const StatusItemEvent&, const StatusItemEvent&) = default;
};

struct StatusItemImage {
    /// The platform's symbol name; each desktop has its own drawing for it.
    std::string symbol;
    std::string accessibilityDescription;
    /// Takes the colour of the bar.
    bool isTemplate = false;
    friend bool operator==(const StatusItemImage&, const StatusItemImage&) = default;
};

class StatusItem {
  public:
    /// The current event; absent when the click came without one.
    using Action = std::function<void(std::optional<StatusItemEvent> event)>;
    virtual ~StatusItem() = default;

    /// For the log.
    virtual std::string description() const = 0;
    /// Without a button the item can be neither seen nor clicked, and the four operations below do nothing.
    virtual bool hasButton() const = 0;
    virtual void setImage(const StatusItemImage& image) = 0;
    /// Called for a click with the left or the right button.
    virtual void setAction(Action action) = 0;
    /// Called when the item is activated without a mouse: by keyboard or by an assistive program.
    virtual void setActivation(std::function<void()> activated) = 0;
    /// The button's frame on screen; absent while the button is in no window or its host does not report it.
    virtual std::optional<Rect> buttonFrame() const = 0;

    /// While a menu is attached, a click opens it instead of calling the action. A menu that is open when it
    /// is detached stays open until the user closes it.
    virtual void attachMenu(const Menu& menu) = 0;
    /// A click by program; with a menu attached the menu opens, and where the desktop runs menus in a loop of
    /// their own, this returns when it has closed.
    virtual void performClick() = 0;
    virtual void detachMenu() = 0;
    /// For hosts that show an item's menu themselves and ask nobody: `build` is called whenever the host
    /// wants a fresh menu. Does nothing where no such hosts exist.
    virtual void setHostMenu(std::function<Menu()> build) = 0;
};

class StatusBar {
  public:
    virtual ~StatusBar() = default;
    /// Never null. Without a bar, the item waits for one: it appears as soon as there is one.
    virtual std::unique_ptr<StatusItem> makeStatusItem(double length) = 0;
    /// Whether a bar is there now; where there is always one: true.
    virtual bool isAvailable() const = 0;
};

}  // namespace pintle
