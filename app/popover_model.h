// What the theme popover shows and does, as values and operations: header, filter, rows, footer. Built once
// by the root when the popover is first shown, and kept; the user interface draws it and calls its
// operations. Main thread only.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/cursor_view_model.h"
#include "app/row_news.h"
#include "app/slider.h"
#include "app/symbols.h"
#include "app/theme_row.h"
#include "app/user_text.h"
#include "base/geometry.h"
#include "base/notification_center.h"
#include "base/signal.h"
#include "base/subscription.h"
#include "platform/application.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "settings/cursor_settings.h"
#include "settings/update_checker.h"
#include "themes/cursor_handedness.h"

namespace pintle {

struct HeaderButton {
    enum class Request { settings, about, quit };
    Request request = Request::settings;
    std::string_view symbol;
    /// Its accessible name and its tooltip.
    UserText name;
    /// The keys that press it from anywhere in the popover, as "Ctrl+,"; Ctrl is the platform's command key.
    std::string_view shortcut;
};

/// One of a group of which exactly one is selected.
struct FilterButton {
    CursorHandedness filter = CursorHandedness::all;
    UserText title;
    std::string_view icon;
    bool isSelected = false;
    friend bool operator==(const FilterButton&, const FilterButton&) = default;
};

/// The popover's background.
struct GlassBackground {
    /// Off: opaque.
    bool isOn = false;
    /// As it is to be drawn, 0.75 to 1.00; a stored value outside is drawn as the nearest end and stays
    /// stored.
    double opacity = 1;
    friend bool operator==(const GlassBackground&, const GlassBackground&) = default;
};
GlassBackground glassBackground(const CursorSettings& settings);

class PopoverModel {
  public:
    static constexpr Size contentSize{340, 520};
    static constexpr SliderRange scaleRange{0.75, 1.5, 0.05};
    /// Where the slider's groove has a notch.
    static constexpr double scaleNotch = 1.0;
    static constexpr std::chrono::milliseconds scaleDebounce{300};
    /// The spring that moves the digits of the percentage, in seconds and as a fraction.
    static constexpr double percentSpringResponse = 0.3;
    static constexpr double percentSpringDamping = 0.825;

    struct Dependencies {
        CursorViewModel& viewModel;
        UpdateChecker& updates;
        CursorSettings& settings;
        NotificationCenter& notifications;
        MainQueue& mainQueue;
        Application& application;
        Log& log;
    };
    /// Whether this session lets the program change the pointer: by registration or by overlay, by the
    /// desktop's own setting, which not every running program follows, or not at all.
    enum class Session { pointerCanChange, pointerFollowsSetting, pointerCannotChange };

    explicit PopoverModel(const Dependencies& dependencies, Session session = Session::pointerCanChange);
    PopoverModel(const PopoverModel&) = delete;
    PopoverModel& operator=(const PopoverModel&) = delete;

    /// Each time the popover is shown, before it is drawn.
    void onAppear();
    /// Each time it goes.
    void onDisappear() { news_.disappeared(); }

    // Header.
    static constexpr std::string_view logo = symbol::logo;
    static UserText title();
    /// "Update 1.4.0"; absent while no newer version is known. Its symbol is symbol::update.
    std::optional<UserText> updateButton() const;
    void openDownloadPage();
    static std::array<HeaderButton, 3> headerButtons();
    void press(HeaderButton::Request request);

    // Filter bar.
    std::array<FilterButton, 4> filterButtons() const;
    void select(CursorHandedness filter);

    // List.
    /// The ids of the rows in their order. Asking costs nothing and logs nothing.
    const std::vector<std::string>& rowIds() const { return rowIds_; }
    /// Any id; the one of no theme has the row "Unknown". What it is called with need not be in rowIds().
    ThemeRow row(const std::string& id) const;
    /// The place in rowIds() of the first row whose name contains `typed`, see firstContaining().
    std::optional<std::size_t> rowContaining(std::string_view typed) const;
    /// One sentence for all rows whose download failed for want of a network; absent when there is none.
    std::optional<UserText> networkLine() const;
    /// Starts the downloads of those rows again.
    void retryDownloads();
    /// What a click, Enter or Space on a row does: nothing while the row accepts no tap.
    void buttonAction(const std::string& id);
    void handleTap(const std::string& id);
    /// What the delete button and the Delete key do: nothing while the row has no delete button.
    void deleteTheme(const std::string& id);

    // Footer.
    /// The scale as the slider shows it; a stored value outside of the range is shown as it is in the
    /// percentage and as the nearest end on the slider.
    double cursorScale() const { return cursorScale_; }
    long long scalePercent() const { return wholePercent(cursorScale_); }
    UserText scaleText() const { return percentText(cursorScale_); }
    /// On every value the slider takes. Values are put on the slider's grid; one that is not new does
    /// nothing.
    void sliderChanged(double value);
    /// What the scale makes of the current theme: the longer side of its arrow as it was last applied, in
    /// pixels. Absent while no theme shows.
    std::optional<UserText> arrowText() const;
    /// The desktop's own cursors are in use.
    bool systemDefaultInForce() const;
    /// What "System Default" does or, while it is in force, that it is.
    UserText systemDefaultHelp() const;
    static constexpr std::string_view systemDefaultSymbol = symbol::active;
    static constexpr std::string_view resetSymbol = symbol::reset;
    /// "System Default": back to the desktop's cursors. The scale stays.
    void resetToDefault();
    /// "Reset": the scale back to 100 %, as if the slider had been moved there.
    void resetScale() { sliderChanged(scaleNotch); }

    GlassBackground glass() const { return glassBackground(deps_.settings); }
    /// One sentence of what this session does not give; absent where it gives everything. Where the pointer
    /// cannot change no theme is active and downloaded rows accept no tap.
    std::optional<UserText> unavailable() const;
    /// Whether slider, "System Default" and "Reset" do anything.
    bool footerEnabled() const { return session_ != Session::pointerCannotChange; }

    /// What the parts of the popover that read for themselves work with.
    CursorViewModel& viewModel() const { return deps_.viewModel; }
    MainQueue& mainQueue() const { return deps_.mainQueue; }

    /// rowIds() is another list: filter or catalog have changed.
    Signal<> rowsReplaced;
    /// The rows of these ids have new values; some may not be listed now. Comes before rowsReplaced when one
    /// cause changes both.
    Signal<const std::vector<std::string>&> rowsChanged;
    /// To be said to people who cannot see the rows, joined with commas; only while the popover is shown.
    Signal<const std::vector<UserText>&> announced;
    /// Header, filter buttons, scale or glass may have changed.
    Signal<> changed;

  private:
    const CursorThemeInfo* find(const std::string& id) const;
    CursorThemeInfo theme(const std::string& id) const;
    bool isActive(const std::string& id) const;
    void refreshRows();
    void refreshNews();
    /// What `changed` says of the list's own values.
    struct Shown {
        bool networkLine = false;
        bool systemDefault = false;
        std::optional<Size> arrow;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    Shown shownNow() const;
    bool wantsNetwork(const std::string& id) const;
    void refreshList();
    void settingsChanged();

    const Dependencies deps_;
    const Session session_;
    double cursorScale_;
    /// The pending re-apply; ending it takes it back.
    Timer scaleDebounceTask_;

    RowNews news_;
    /// The rows that failed for want of a network, as long as nobody has tried again.
    std::vector<std::string> offline_;
    Shown shownBefore_;

    std::vector<std::string> rowIds_;
    /// The filter that rowIds_ was made with.
    CursorHandedness listedFilter_ = CursorHandedness::all;
    /// Ids and hands of all themes when rowIds_ was made.
    std::vector<std::pair<std::string, CursorHandedness>> listedThemes_;
    /// What the user interface shows of each theme, in catalog order.
    std::vector<ThemeRow> shown_;
    std::vector<Subscription> observers_;
};

namespace popover_text {

inline constexpr auto title = translatable("Pintle", "Pintle");
inline constexpr auto update = translatable("Pintle", "Update %1");
inline constexpr auto settings = translatable("Pintle", "Settings");
inline constexpr auto about = translatable("Pintle", "About Pintle");
inline constexpr auto quit = translatable("Pintle", "Quit Pintle");
inline constexpr auto filterAll = translatable("Pintle", "All");
inline constexpr auto filterUniversal = translatable("Pintle", "Universal");
inline constexpr auto filterRight = translatable("Pintle", "Right");
inline constexpr auto filterLeft = translatable("Pintle", "Left");
/// Accessible names of the filter bar, the list and the slider.
inline constexpr auto filterName = translatable("Pintle", "Show themes");
inline constexpr auto listName = translatable("Pintle", "Themes");
inline constexpr auto scaleName = translatable("Pintle", "Cursor Size");
inline constexpr auto systemDefault = translatable("Pintle", "System Default");
inline constexpr auto systemDefaultHelp = translatable("Pintle", "Use the desktop's own cursors");
inline constexpr auto systemDefaultInForce = translatable("Pintle", "The desktop's own cursors are in use");
inline constexpr auto arrowSize = translatable("Pintle", "Arrow: %1 pixels");
inline constexpr auto reset = translatable("Pintle", "Reset");
inline constexpr auto resetHelp = translatable("Pintle", "Cursor size back to 100%");
inline constexpr auto noNetwork = translatable("Pintle", "There is no network");
inline constexpr auto retry = translatable("Pintle", "Retry");
inline constexpr auto unavailable =
    translatable("Pintle", "Pintle cannot change the pointer in this kind of session.");
inline constexpr auto partlyUnavailable = translatable(
    "Pintle", "Applications that are running already may keep their pointer until they are restarted.");
inline constexpr std::array all = {title,
                                   update,
                                   settings,
                                   about,
                                   quit,
                                   filterAll,
                                   filterUniversal,
                                   filterRight,
                                   filterLeft,
                                   filterName,
                                   listName,
                                   scaleName,
                                   systemDefault,
                                   systemDefaultHelp,
                                   systemDefaultInForce,
                                   arrowSize,
                                   reset,
                                   resetHelp,
                                   noNetwork,
                                   retry,
                                   unavailable,
                                   partlyUnavailable};

}  // namespace popover_text
}  // namespace pintle
