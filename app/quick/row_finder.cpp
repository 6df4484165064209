#include "app/quick/row_finder.h"

namespace pintle {

RowFinder::RowFinder(PopoverModel& popover, QObject* parent)
    : QObject(parent), popover_(popover), replaced_(popover.rowsReplaced.observe([this] { clear(); })) {}

bool RowFinder::type(const QString& text) { return follow(search_.type(text.toStdString())); }
bool RowFinder::shorten() { return follow(search_.shorten()); }
bool RowFinder::clear() { return follow(search_.clear()); }

bool RowFinder::follow(bool taken) {
    if (!taken) return false;
    const auto found = popover_.rowContaining(search_.typed());
    row_ = found ? static_cast<int>(*found) : -1;
    Q_EMIT changed();
    return true;
}

}  // namespace pintle
