// Finding a row of the popover by typing, as the list's view speaks with it: gives the keys and shows what
// has been typed. Main thread only.
#pragma once

#include <QObject>
#include <QString>

#include "app/popover_model.h"
#include "app/row_search.h"
#include "base/subscription.h"

namespace pintle {

class RowFinder : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString typed READ typed NOTIFY changed)
    Q_PROPERTY(int row READ row NOTIFY changed)

  public:
    /// `popover` must outlive the finder.
    explicit RowFinder(PopoverModel& popover, QObject* parent = nullptr);

    /// Empty while no search stands.
    QString typed() const { return QString::fromStdString(search_.typed()); }
    /// The place of what has been found; -1 when nothing has.
    int row() const { return row_; }

    /// See RowSearch. True when the key belongs to the search.
    Q_INVOKABLE bool type(const QString& text);
    Q_INVOKABLE bool shorten();
    Q_INVOKABLE bool clear();

  Q_SIGNALS:
    void changed();

  private:
    bool follow(bool taken);

    PopoverModel& popover_;
    RowSearch search_;
    int row_ = -1;
    Subscription replaced_;
};

}  // namespace pintle
