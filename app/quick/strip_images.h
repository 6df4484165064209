// The strip of a theme's cursors as the views see it: which row shows it, and one image per cursor with its
// frames below one another. Main thread only, except for what says otherwise.
#pragma once

#include <QObject>
#include <QQuickImageProvider>
#include <QString>
#include <QVariantList>

#include <memory>
#include <optional>

#include "app/strip_display.h"
#include "base/subscription.h"

namespace pintle {

class StripImages : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString themeId READ themeId NOTIFY changed)
    Q_PROPERTY(QVariantList cursors READ cursors NOTIFY changed)

  public:
    static constexpr const char* providerName = "strips";

    explicit StripImages(PopoverModel& popover, QObject* parent = nullptr);
    ~StripImages() override;

    /// Empty while no row shows its strip.
    QString themeId() const;
    /// Maps of "source", the image's address; "frames", how many; and "interval", milliseconds for each, 0
    /// for a still cursor.
    QVariantList cursors() const;

    Q_INVOKABLE void attend(const QString& id) { display_.attend(id.toStdString()); }
    Q_INVOKABLE void leave(const QString& id) { display_.leave(id.toStdString()); }
    void clear() { display_.clear(); }

    /// An image asked for at the width W has a square of that side for each frame. It may outlive this
    /// object; it answers on any thread.
    std::unique_ptr<QQuickImageProvider> makeProvider() const;

  Q_SIGNALS:
    void changed();

  private:
    struct Store;

    void follow();

    StripDisplay display_;
    const std::shared_ptr<Store> store_;
    Subscription changed_;
};

}  // namespace pintle
