// The popover's rows for its list: one entry per id, in the order of the model, with the values of ThemeRow
// as roles. A row that changes reports only the roles that changed; another filter inserts and removes rows
// and leaves the others where they are. Main thread only.
#pragma once

#include <QAbstractListModel>

#include <map>
#include <string>
#include <vector>

#include "app/popover_model.h"
#include "app/quick/preview_images.h"
#include "app/theme_row.h"
#include "base/subscription.h"

namespace pintle {

class ThemeRowsModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int activeRow READ activeRow NOTIFY activeRowChanged)

  public:
    enum Role {
        ThemeIdRole = Qt::UserRole,
        NameRole,
        /// 400, 500 or 600.
        WeightRole,
        AuthorRole,
        LicenseRole,
        HandIconRole,
        HandHelpRole,
        /// "download", "warning", "pending" or "preview".
        TileRole,
        TileIconRole,
        /// "quiet", "accent" or "danger"; the status' tone too.
        TileToneRole,
        /// Address of the drawing that stands for the picture; empty where letters or nothing does.
        DrawingRole,
        MonogramRole,
        /// The number of a TileTint.
        TintRole,
        /// Address of the picture; empty without one.
        PreviewRole,
        StatusRole,
        StatusToneRole,
        /// "none", "indeterminate" or "value".
        ProgressRole,
        ProgressValueRole,
        ActiveRole,
        /// "circle", "check" or "spinner".
        MarkRole,
        AnimatedRole,
        CanDeleteRole,
        ErrorRole,
        /// The error in plain words; empty where nobody knows.
        ErrorSentenceRole,
        NewRole,
        AcceptsTapRole,
        DescriptionRole,
    };

    /// Both must outlive the rows.
    ThemeRowsModel(PopoverModel& popover, PreviewImages& previews, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The place of the active theme in the list; -1 when it is not listed.
    int activeRow() const;

  Q_SIGNALS:
    void activeRowChanged();

  private:
    struct Entry {
        ThemeRow row;
        QString preview;
    };

    Entry entry(const std::string& id);
    QVariant value(const Entry& entry, int role) const;
    void rowsChanged(const std::vector<std::string>& ids);
    void listReplaced();

    PopoverModel& popover_;
    PreviewImages& previews_;
    std::vector<Entry> entries_;
    std::vector<Subscription> observers_;
};

}  // namespace pintle
