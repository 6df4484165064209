#include "app/quick/theme_rows_model.h"

#include <algorithm>
#include <unordered_set>

#include "app/quick/symbol_icons.h"
#include "app/quick/theme_drawings.h"
#include "app/quick/translated.h"

namespace pintle {
namespace {

QString text(std::string_view words) {
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

QString icon(std::string_view symbol) { return text(iconOfSymbol(symbol)); }

QString nameOf(RowTone tone) {
    switch (tone) {
        case RowTone::quiet:
            break;
        case RowTone::accent:
            return "accent";
        case RowTone::danger:
            return "danger";
    }
    return "quiet";
}

QString nameOf(RowTile tile) {
    switch (tile) {
        case RowTile::download:
            break;
        case RowTile::warning:
            return "warning";
        case RowTile::pendingPreview:
            return "pending";
        case RowTile::preview:
            return "preview";
    }
    return "download";
}

QString nameOf(RowMark mark) {
    switch (mark) {
        case RowMark::circle:
            break;
        case RowMark::check:
            return "check";
        case RowMark::spinner:
            return "spinner";
    }
    return "circle";
}

QString nameOf(RowProgress progress) {
    switch (progress) {
        case RowProgress::none:
            break;
        case RowProgress::indeterminate:
            return "indeterminate";
        case RowProgress::value:
            return "value";
    }
    return "none";
}

int numberOf(RowWeight weight) {
    switch (weight) {
        case RowWeight::regular:
            break;
        case RowWeight::medium:
            return 500;
        case RowWeight::demiBold:
            return 600;
    }
    return 400;
}

}  // namespace

ThemeRowsModel::ThemeRowsModel(PopoverModel& popover, PreviewImages& previews, QObject* parent)
    : QAbstractListModel(parent), popover_(popover), previews_(previews) {
    for (const auto& id : popover_.rowIds()) entries_.push_back(entry(id));
    observers_.push_back(popover_.rowsChanged.observe([this](const auto& ids) { rowsChanged(ids); }));
    observers_.push_back(popover_.rowsReplaced.observe([this] { listReplaced(); }));
}

int ThemeRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QHash<int, QByteArray> ThemeRowsModel::roleNames() const {
    return {{ThemeIdRole, "themeId"},
            {NameRole, "name"},
            {WeightRole, "weight"},
            {AuthorRole, "author"},
            {LicenseRole, "license"},
            {HandIconRole, "handIcon"},
            {HandHelpRole, "handHelp"},
            {TileRole, "tile"},
            {TileIconRole, "tileIcon"},
            {TileToneRole, "tileTone"},
            {DrawingRole, "drawing"},
            {MonogramRole, "monogram"},
            {TintRole, "tint"},
            {PreviewRole, "preview"},
            {StatusRole, "status"},
            {StatusToneRole, "statusTone"},
            {ProgressRole, "progress"},
            {ProgressValueRole, "progressValue"},
            {ActiveRole, "active"},
            {MarkRole, "mark"},
            {AnimatedRole, "animated"},
            {CanDeleteRole, "canDelete"},
            {ErrorRole, "error"},
            {ErrorSentenceRole, "errorSentence"},
            {NewRole, "isNew"},
            {AcceptsTapRole, "acceptsTap"},
            {DescriptionRole, "description"}};
}

QVariant ThemeRowsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    return value(entries_[static_cast<std::size_t>(index.row())], role);
}

QVariant ThemeRowsModel::value(const Entry& entry, int role) const {
    const auto& row = entry.row;
    switch (role) {
        case ThemeIdRole:
            return QString::fromStdString(row.id);
        case Qt::DisplayRole:
        case NameRole:
            return translated(row.name);
        case WeightRole:
            return numberOf(row.nameWeight);
        case AuthorRole:
            return QString::fromStdString(row.author);
        case LicenseRole:
            return QString::fromStdString(row.license);
        case HandIconRole:
            return row.handSymbol ? icon(*row.handSymbol) : QString();
        case HandHelpRole:
            return translated(row.handHelp);
        case TileRole:
            return nameOf(row.tile);
        case TileIconRole:
            return icon(row.tileSymbol);
        case TileToneRole:
            return nameOf(row.tileTone);
        case DrawingRole:
            return ThemeDrawings::address(row.drawing);
        case MonogramRole:
            return QString::fromStdString(row.drawing.letters);
        case TintRole:
            return static_cast<int>(row.drawing.tint);
        case PreviewRole:
            return entry.preview;
        case StatusRole:
            return translated(row.statusText);
        case StatusToneRole:
            return nameOf(row.statusTone);
        case ProgressRole:
            return nameOf(row.progress);
        case ProgressValueRole:
            return row.progressValue;
        case ActiveRole:
            return row.isActive;
        case MarkRole:
            return nameOf(row.mark);
        case AnimatedRole:
            return row.isAnimated;
        case CanDeleteRole:
            return row.canDelete;
        case ErrorRole:
            return QString::fromStdString(row.errorTooltip.value_or(std::string()));
        case ErrorSentenceRole:
            return translated(row.errorSentence);
        case NewRole:
            return row.isNew;
        case AcceptsTapRole:
            return row.acceptsTap;
        case DescriptionRole:
            return joined(row.accessibleDescription);
        default:
            return {};
    }
}

int ThemeRowsModel::activeRow() const {
    const auto found = std::ranges::find_if(entries_, [](const Entry& entry) { return entry.row.isActive; });
    return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

ThemeRowsModel::Entry ThemeRowsModel::entry(const std::string& id) {
    auto row = popover_.row(id);
    auto preview = previews_.offer(row.id, row.preview);
    return {std::move(row), std::move(preview)};
}

void ThemeRowsModel::rowsChanged(const std::vector<std::string>& ids) {
    const std::unordered_set<std::string> asked(ids.begin(), ids.end());
    const int activeBefore = activeRow();
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        if (!asked.contains(entries_[at].row.id)) continue;
        auto now = entry(entries_[at].row.id);
        QList<int> roles;
        const auto names = roleNames();
        for (auto role = names.keyBegin(); role != names.keyEnd(); ++role)
            if (value(entries_[at], *role) != value(now, *role)) roles.append(*role);
        entries_[at] = std::move(now);
        const auto place = index(static_cast<int>(at));
        if (!roles.isEmpty()) Q_EMIT dataChanged(place, place, roles);
    }
    if (activeRow() != activeBefore) Q_EMIT activeRowChanged();
}

void ThemeRowsModel::listReplaced() {
    const int activeBefore = activeRow();
    const auto& ids = popover_.rowIds();
    const std::unordered_set<std::string> wanted(ids.begin(), ids.end());
    const auto stays = [&](std::size_t at) { return wanted.contains(entries_[at].row.id); };
    // What goes, in runs from the end; what comes, in runs from the start. Both lists have the same order.
    for (std::size_t end = entries_.size(); end > 0;) {
        if (stays(end - 1)) {
            --end;
            continue;
        }
        std::size_t begin = end - 1;
        while (begin > 0 && !stays(begin - 1)) --begin;
        beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(begin),
                       entries_.begin() + static_cast<std::ptrdiff_t>(end));
        endRemoveRows();
        end = begin;
    }
    const auto isNext = [&](std::size_t at) {
        return at < entries_.size() && entries_[at].row.id == ids[at];
    };
    for (std::size_t at = 0; at < ids.size();) {
        if (isNext(at)) {
            ++at;
            continue;
        }
        const auto next = at < entries_.size() ? std::ranges::find(ids, entries_[at].row.id) : ids.end();
        const auto end = static_cast<std::size_t>(next - ids.begin());
        std::vector<Entry> coming;
        for (std::size_t id = at; id < end; ++id) coming.push_back(entry(ids[id]));
        beginInsertRows({}, static_cast<int>(at), static_cast<int>(end) - 1);
        entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(at),
                        std::make_move_iterator(coming.begin()), std::make_move_iterator(coming.end()));
        endInsertRows();
        at = end;
    }
    if (activeRow() != activeBefore) Q_EMIT activeRowChanged();
}

}  // namespace pintle
