#include "app/strip_display.h"

#include <algorithm>
#include <utility>

namespace pintle {

StripDisplay::StripDisplay(PopoverModel& popover, CursorViewModel& viewModel, MainQueue& mainQueue)
    : popover_(popover),
      viewModel_(viewModel),
      mainQueue_(mainQueue),
      rowsChanged_(popover.rowsChanged.observe([this](const auto&) { follow(); })) {}

void StripDisplay::attend(const std::string& id) {
    std::erase(attended_, id);
    attended_.push_back(id);
    follow();
}

void StripDisplay::leave(const std::string& id) {
    std::erase(attended_, id);
    follow();
}

void StripDisplay::clear() {
    attended_.clear();
    follow();
}

bool StripDisplay::canShow(const std::string& id) const {
    const auto row = popover_.row(id);
    const bool onDisk = row.tile == RowTile::preview || row.tile == RowTile::pendingPreview;
    return onDisk && row.status == RowStatus::none;
}

void StripDisplay::follow() {
    const auto wanted = !attended_.empty() && canShow(attended_.back()) ? attended_.back() : std::string();
    if (wanted == wanted_) return;
    drop();
    wanted_ = wanted;
    if (!wanted_.empty()) rested_ = mainQueue_.after(rest, [this] { read(wanted_); });
}

void StripDisplay::read(const std::string& id) {
    reading_.emplace();
    viewModel_.readStrip(id, *reading_, [this, id](std::vector<StripCursor> strip) {
        if (strip.empty()) return;
        id_ = id;
        strip_ = std::move(strip);
        changed.emit();
    });
}

void StripDisplay::drop() {
    rested_.end();
    reading_.reset();
    if (id_.empty()) return;
    id_.clear();
    strip_.clear();
    changed.emit();
}

}  // namespace pintle
