#include "app/about_window_model.h"

namespace pintle {
namespace {

constexpr auto kVersionWithoutBundle = "1.0.0";

}  // namespace

AboutWindowModel::AboutWindowModel(const Bundle& bundle, Application& application,
                                   std::function<void()> dismiss)
    : dismiss_(std::move(dismiss)),
      version_(bundle.shortVersion.empty() ? kVersionWithoutBundle : bundle.shortVersion),
      application_(application) {}

void AboutWindowModel::appear() {
    appeared_ = false;
    iconScale_ = iconScaleAtFirst;
    glowOpacity_ = glowOpacityAtFirst;
    featuresAppeared_ = false;
    changed.emit();

    appeared_ = true;
    iconScale_ = 1;
    glowOpacity_ = 1;
    featuresAppeared_ = true;
    changed.emit();
}

UserText AboutWindowModel::name() { return UserText(about_text::name); }

UserText AboutWindowModel::versionText() const { return UserText(about_text::version, version_); }

UserText AboutWindowModel::tagline() { return UserText(about_text::tagline); }

UserText AboutWindowModel::featuresTitle() { return UserText(about_text::features); }

std::array<AboutFeatureRow, 4> AboutWindowModel::features() const {
    using std::chrono::milliseconds;
    const auto row = [this](std::string_view symbol, std::string_view text, int delay) {
        return AboutFeatureRow{symbol, UserText(text), milliseconds(delay), featuresAppeared_};
    };
    return {row(symbol::pointer, about_text::themes, 0), row(symbol::size, about_text::size, 100),
            row(symbol::autoApply, about_text::autoApply, 200),
            row(symbol::menuBar, about_text::menuBar, 300)};
}

UserText AboutWindowModel::contactText() { return UserText(about_text::contact); }

std::string AboutWindowModel::contactAddress() { return PINTLE_SUPPORT_ADDRESS; }

void AboutWindowModel::openContact() { application_.openUrl("mailto:" + contactAddress()); }

}  // namespace pintle
