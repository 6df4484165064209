// What the about window shows, and its entrance. Built once by the root with the window; the user interface
// draws it, animates from one state to the next, and calls its operations. Main thread only.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "app/symbols.h"
#include "app/user_text.h"
#include "base/geometry.h"
#include "base/signal.h"
#include "platform/application.h"
#include "platform/bundle.h"

namespace pintle {

struct AboutFeatureRow {
    std::string_view symbol;
    UserText text;
    /// From the start of the entrance to the start of the row's own animation.
    std::chrono::milliseconds delay{0};
    /// False: not shown yet.
    bool appeared = false;
    friend bool operator==(const AboutFeatureRow&, const AboutFeatureRow&) = default;
};

class AboutWindowModel {
  public:
    static constexpr Size contentSize{300, 480};
    // The entrance. With reduced motion everything is shown at once.
    static constexpr double iconScaleAtFirst = 0.8;
    static constexpr double glowOpacityAtFirst = 0;
    static constexpr std::chrono::milliseconds iconDuration{420};
    static constexpr std::chrono::milliseconds rowDuration{260};
    /// How far below its place a row begins, in points.
    static constexpr double rowRise = 8;

    /// `dismiss` closes the window.
    AboutWindowModel(const Bundle& bundle, Application& application, std::function<void()> dismiss = {});
    AboutWindowModel(const AboutWindowModel&) = delete;
    AboutWindowModel& operator=(const AboutWindowModel&) = delete;

    /// Each time the window is shown: back to the first state, and from there to the last. `changed` comes
    /// after each; the user interface jumps to a state in which appeared() is false and moves to one in which
    /// it is true.
    void appear();
    void dismiss() const {
        if (dismiss_) dismiss_();
    }

    bool appeared() const { return appeared_; }
    double iconScale() const { return iconScale_; }
    double glowOpacity() const { return glowOpacity_; }
    bool featuresAppeared() const { return featuresAppeared_; }
    const std::string& version() const { return version_; }

    static UserText name();
    /// "Version 0.1.0".
    UserText versionText() const;
    static UserText tagline();
    static UserText featuresTitle();
    static constexpr std::string_view featuresSymbol = symbol::features;
    std::array<AboutFeatureRow, 4> features() const;
    static UserText contactText();
    /// The vendor's support address, fixed when the program was built.
    static std::string contactAddress();
    /// Opens the user's mail program.
    void openContact();

    Signal<> changed;

  private:
    std::function<void()> dismiss_;
    bool appeared_ = false;
    double iconScale_ = iconScaleAtFirst;
    double glowOpacity_ = glowOpacityAtFirst;
    bool featuresAppeared_ = false;
    std::string version_;
    Application& application_;
};

namespace about_text {

inline constexpr auto windowTitle = translatable("Pintle", "About Pintle");
inline constexpr auto name = translatable("Pintle", "Pintle");
inline constexpr auto version = translatable("Pintle", "Version %1");
inline constexpr auto tagline = translatable("Pintle", "A modern cursor manager for macOS");
inline constexpr auto features = translatable("Pintle", "Features");
inline constexpr auto themes = translatable("Pintle", "Custom cursor themes");
inline constexpr auto size = translatable("Pintle", "Adjustable cursor size");
inline constexpr auto autoApply = translatable("Pintle", "Auto-apply on launch");
inline constexpr auto menuBar = translatable("Pintle", "Menu bar integration");
inline constexpr auto contact = translatable("Pintle", "Contact Support");
inline constexpr std::array all = {windowTitle, name, version,   tagline, features,
                                   themes,      size, autoApply, menuBar, contact};

}  // namespace about_text
}  // namespace pintle
