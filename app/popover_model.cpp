#include "app/popover_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "app/row_announcement.h"
#include "app/row_search.h"
#include "app/settings_window_model.h"
#include "settings/notification_names.h"

namespace pintle {
namespace {

std::string_view iconOf(CursorHandedness filter) {
    switch (filter) {
        case CursorHandedness::all:
            break;
        case CursorHandedness::universal:
            return symbol::handUniversal;
        case CursorHandedness::rightHanded:
            return symbol::handRight;
        case CursorHandedness::leftHanded:
            return symbol::handLeft;
    }
    return symbol::filterAll;
}

}  // namespace

GlassBackground glassBackground(const CursorSettings& settings) {
    constexpr auto range = SettingsWindowModel::glassOpacityRange;
    const double stored = settings.glassOpacity();
    return {settings.glassMode(), stored > range.from ? std::min(stored, range.to) : range.from};
}

PopoverModel::PopoverModel(const Dependencies& dependencies, Session session)
    : deps_(dependencies), session_(session), cursorScale_(dependencies.settings.cursorScale()) {
    refreshList();
    refreshRows();
    shownBefore_ = shownNow();
    observers_.push_back(deps_.viewModel.changed.observe([this] {
        refreshRows();
        refreshList();
        const auto shown = shownNow();
        if (std::exchange(shownBefore_, shown) != shown) changed.emit();
    }));
    observers_.push_back(deps_.viewModel.wantedNetwork().observe([this](const std::string& id) {
        std::erase(offline_, id);
        offline_.push_back(id);
        shownBefore_ = shownNow();
        changed.emit();
    }));
    observers_.push_back(deps_.updates.changed.observe([this] { changed.emit(); }));
    observers_.push_back(deps_.settings.changed.observe([this] { settingsChanged(); }));
}

void PopoverModel::onAppear() {
    deps_.log.system("[POPOVER] ON APPEAR CALLED!!!");
    deps_.log.system(fmt::format("[POPOVER] themes: {}, filtered: {}", deps_.viewModel.themes().size(),
                                 deps_.viewModel.filteredThemes().size()));
    cursorScale_ = deps_.settings.cursorScale();
    news_.appeared();
    refreshRows();
    changed.emit();
}

UserText PopoverModel::title() { return UserText(popover_text::title); }

std::optional<UserText> PopoverModel::updateButton() const {
    const auto& available = deps_.updates.available();
    if (!available) return std::nullopt;
    return UserText(popover_text::update, available->version);
}

void PopoverModel::openDownloadPage() { deps_.application.openUrl(deps_.updates.downloadURL()); }

std::array<HeaderButton, 3> PopoverModel::headerButtons() {
    using Request = HeaderButton::Request;
    return {{{Request::settings, symbol::settings, UserText(popover_text::settings), "Ctrl+,"},
             {Request::about, symbol::about, UserText(popover_text::about), "F1"},
             {Request::quit, symbol::power, UserText(popover_text::quit), "Ctrl+Q"}}};
}

void PopoverModel::press(HeaderButton::Request request) {
    switch (request) {
        case HeaderButton::Request::settings:
            return deps_.notifications.post(notification::openSettingsRequest);
        case HeaderButton::Request::about:
            return deps_.notifications.post(notification::openAboutRequest);
        case HeaderButton::Request::quit:
            return deps_.notifications.post(notification::quitAppRequest);
    }
}

std::array<FilterButton, 4> PopoverModel::filterButtons() const {
    std::array<FilterButton, cursor_handedness::allCases.size()> buttons;
    std::transform(cursor_handedness::allCases.begin(), cursor_handedness::allCases.end(), buttons.begin(),
                   [this](CursorHandedness filter) {
                       return FilterButton{filter, UserText(cursor_handedness::rawValue(filter)),
                                           iconOf(filter), filter == deps_.viewModel.selectedFilter()};
                   });
    return buttons;
}

void PopoverModel::select(CursorHandedness filter) { deps_.viewModel.setSelectedFilter(filter); }

const CursorThemeInfo* PopoverModel::find(const std::string& id) const {
    const auto& themes = deps_.viewModel.themes();
    const auto found = std::find_if(themes.begin(), themes.end(),
                                    [&](const CursorThemeInfo& theme) { return theme.id == id; });
    return found == themes.end() ? nullptr : &*found;
}

CursorThemeInfo PopoverModel::theme(const std::string& id) const {
    const auto* known = find(id);
    return known ? *known : unknownTheme(id);
}

bool PopoverModel::isActive(const std::string& id) const {
    const auto& current = deps_.viewModel.currentTheme();
    return session_ != Session::pointerCannotChange && current && current->id == id;
}

ThemeRow PopoverModel::row(const std::string& id) const {
    const auto* known = find(id);
    auto row = themeRow(known, id, isActive(id));
    if (session_ == Session::pointerCannotChange && known && known->isDownloaded) row.acceptsTap = false;
    row.isNew = known && known->isDownloaded && news_.isNew(id);
    if (row.isNew) row.accessibleDescription.emplace_back(row_text::isNew);
    return row;
}

std::optional<std::size_t> PopoverModel::rowContaining(std::string_view typed) const {
    std::vector<std::string> names;
    for (const auto& id : rowIds_) names.push_back(theme(id).name);
    return firstContaining(names, typed);
}

bool PopoverModel::wantsNetwork(const std::string& id) const {
    const auto* known = find(id);
    return known && known->downloadError && !known->isDownloading;
}

std::optional<UserText> PopoverModel::networkLine() const {
    if (std::ranges::none_of(offline_, [this](const auto& id) { return wantsNetwork(id); }))
        return std::nullopt;
    return UserText(popover_text::noNetwork);
}

void PopoverModel::retryDownloads() {
    for (const auto& id : std::exchange(offline_, {}))
        if (wantsNetwork(id)) deps_.viewModel.downloadTheme(theme(id));
    changed.emit();
}

void PopoverModel::buttonAction(const std::string& id) {
    if (!row(id).acceptsTap) return;
    deps_.log.system(fmt::format("[UI] BUTTON ACTION FIRED for theme: {}", theme(id).name));
    handleTap(id);
}

void PopoverModel::handleTap(const std::string& id) {
    // A copy: what it is passed to changes the list.
    const auto tapped = theme(id);
    deps_.log.system(fmt::format("[UI] handleTap() called for theme: {}, isDownloaded: {:d}", tapped.name,
                                 tapped.isDownloaded));
    if (tapped.isDownloaded) {
        deps_.log.system("[UI] Theme is downloaded, calling applyTheme()");
        deps_.viewModel.applyTheme(tapped);
    } else {
        deps_.log.system("[UI] Theme NOT downloaded, calling downloadTheme()");
        deps_.viewModel.downloadTheme(tapped);
    }
}

void PopoverModel::deleteTheme(const std::string& id) {
    if (row(id).canDelete) deps_.viewModel.deleteTheme(theme(id));
}

void PopoverModel::sliderChanged(double value) {
    value = scaleRange.nearest(value);
    if (value == cursorScale_) return;
    cursorScale_ = value;
    deps_.settings.setCursorScale(value);
    scaleDebounceTask_.end();
    scaleDebounceTask_ = deps_.mainQueue.after(scaleDebounce, [this, value] {
        if (const auto current = deps_.viewModel.currentTheme())
            deps_.viewModel.applyThemeWithScale(*current, value);
    });
}

void PopoverModel::settingsChanged() {
    if (deps_.settings.cursorScale() != cursorScale_) {
        // Somebody else has set the scale: what the slider asked for before must not come after it.
        scaleDebounceTask_.end();
        cursorScale_ = deps_.settings.cursorScale();
    }
    changed.emit();
}

PopoverModel::Shown PopoverModel::shownNow() const {
    return {networkLine().has_value(), systemDefaultInForce(), deps_.viewModel.arrowSize()};
}

std::optional<UserText> PopoverModel::arrowText() const {
    const auto size = deps_.viewModel.arrowSize();
    if (!size || systemDefaultInForce()) return std::nullopt;
    return UserText(popover_text::arrowSize, fmt::format("{:.0f}", std::max(size->width, size->height)));
}

bool PopoverModel::systemDefaultInForce() const {
    return session_ == Session::pointerCannotChange || !deps_.viewModel.currentTheme();
}

UserText PopoverModel::systemDefaultHelp() const {
    return UserText(systemDefaultInForce() ? popover_text::systemDefaultInForce
                                           : popover_text::systemDefaultHelp);
}

void PopoverModel::resetToDefault() { deps_.viewModel.resetToDefault(); }

std::optional<UserText> PopoverModel::unavailable() const {
    if (session_ == Session::pointerCanChange) return std::nullopt;
    if (session_ == Session::pointerFollowsSetting) return UserText(popover_text::partlyUnavailable);
    return UserText(popover_text::unavailable);
}

void PopoverModel::refreshNews() {
    std::size_t at = 0;
    for (const auto& theme : deps_.viewModel.themes()) {
        if (at >= shown_.size()) return;
        const auto& before = shown_[at++];
        const bool came = before.id == theme.id && before.status == RowStatus::downloading &&
                          theme.isDownloaded && !theme.isDownloading;
        if (came) news_.downloaded(theme.id);
    }
}

void PopoverModel::refreshRows() {
    refreshNews();
    std::vector<ThemeRow> rows;
    std::vector<std::string> different;
    std::vector<std::vector<UserText>> announcements;
    rows.reserve(shown_.size());
    for (const auto& theme : deps_.viewModel.themes()) {
        rows.push_back(row(theme.id));
        const auto at = rows.size() - 1;
        if (at >= shown_.size() || shown_[at] != rows.back()) different.push_back(theme.id);
        if (at < shown_.size() && shown_[at].id == theme.id)
            announcements.push_back(announcement(shown_[at], rows.back()));
    }
    shown_ = std::move(rows);
    if (!different.empty()) rowsChanged.emit(different);
    if (!news_.isShown()) return;
    for (const auto& texts : announcements)
        if (!texts.empty()) announced.emit(texts);
}

void PopoverModel::refreshList() {
    const auto filter = deps_.viewModel.selectedFilter();
    std::vector<std::pair<std::string, CursorHandedness>> themes;
    for (const auto& theme : deps_.viewModel.themes()) themes.emplace_back(theme.id, theme.handedness);
    const bool filterChanged = filter != listedFilter_;
    if (filterChanged || themes != listedThemes_) {
        listedFilter_ = filter;
        listedThemes_ = std::move(themes);
        rowIds_.clear();
        for (const auto* theme : deps_.viewModel.filteredThemes()) rowIds_.push_back(theme->id);
        rowsReplaced.emit();
    }
    if (filterChanged) changed.emit();
}

}  // namespace pintle
