// The popover's model as its view sees it: texts translated, symbols as names of drawings, operations to
// call. Decides nothing. Main thread only.
#pragma once

#include <QObject>
#include <QQuickItem>
#include <QString>
#include <QVariantList>

#include <vector>

#include "app/popover_model.h"
#include "app/quick/announcement.h"
#include "app/quick/preview_images.h"
#include "app/quick/row_finder.h"
#include "app/quick/strip_images.h"
#include "app/quick/theme_rows_model.h"
#include "base/subscription.h"

namespace pintle {

class PopoverFacade : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString logo READ logo CONSTANT)
    Q_PROPERTY(QString update READ update NOTIFY changed)
    Q_PROPERTY(QString updateIcon READ updateIcon CONSTANT)
    Q_PROPERTY(QVariantList headerButtons READ headerButtons CONSTANT)
    Q_PROPERTY(QString unavailable READ unavailable CONSTANT)
    Q_PROPERTY(QVariantList filters READ filters CONSTANT)
    Q_PROPERTY(int filter READ filter NOTIFY changed)
    Q_PROPERTY(QString filterName READ filterName CONSTANT)
    Q_PROPERTY(pintle::ThemeRowsModel* rows READ rows CONSTANT)
    Q_PROPERTY(pintle::RowFinder* finder READ finder CONSTANT)
    Q_PROPERTY(pintle::StripImages* strips READ strips CONSTANT)
    Q_PROPERTY(QString networkLine READ networkLine NOTIFY changed)
    Q_PROPERTY(QString retry READ retry CONSTANT)
    Q_PROPERTY(QString newMark READ newMark CONSTANT)
    Q_PROPERTY(QString listName READ listName CONSTANT)
    Q_PROPERTY(QString animatedHelp READ animatedHelp CONSTANT)
    Q_PROPERTY(QString deleteHelp READ deleteHelp CONSTANT)
    Q_PROPERTY(bool footerEnabled READ footerEnabled CONSTANT)
    Q_PROPERTY(double scale READ scale NOTIFY changed)
    Q_PROPERTY(double scaleFrom READ scaleFrom CONSTANT)
    Q_PROPERTY(double scaleTo READ scaleTo CONSTANT)
    Q_PROPERTY(double scaleStep READ scaleStep CONSTANT)
    Q_PROPERTY(double scaleNotch READ scaleNotch CONSTANT)
    Q_PROPERTY(int scalePercent READ scalePercent NOTIFY changed)
    Q_PROPERTY(QString scaleText READ scaleText NOTIFY changed)
    Q_PROPERTY(QString scaleName READ scaleName CONSTANT)
    Q_PROPERTY(QString scaleIcon READ scaleIcon CONSTANT)
    Q_PROPERTY(double percentStiffness READ percentStiffness CONSTANT)
    Q_PROPERTY(double percentFriction READ percentFriction CONSTANT)
    Q_PROPERTY(QString systemDefault READ systemDefault CONSTANT)
    Q_PROPERTY(QString systemDefaultHelp READ systemDefaultHelp NOTIFY changed)
    Q_PROPERTY(bool systemDefaultInForce READ systemDefaultInForce NOTIFY changed)
    Q_PROPERTY(QString systemDefaultIcon READ systemDefaultIcon CONSTANT)
    Q_PROPERTY(bool announcesItself READ announcesItself CONSTANT)
    Q_PROPERTY(QString announcement READ announcement NOTIFY announced)
    Q_PROPERTY(QString arrowText READ arrowText NOTIFY changed)
    Q_PROPERTY(QString reset READ reset CONSTANT)
    Q_PROPERTY(QString resetHelp READ resetHelp CONSTANT)
    Q_PROPERTY(QString resetIcon READ resetIcon CONSTANT)

  public:
    /// Both must outlive the facade.
    PopoverFacade(PopoverModel& model, PreviewImages& previews, QObject* parent = nullptr);

    QString title() const;
    QString logo() const;
    /// Empty while there is no update.
    QString update() const;
    QString updateIcon() const;
    /// Maps of "icon" and "name".
    QVariantList headerButtons() const;
    /// Empty where the pointer can change.
    QString unavailable() const;
    /// Maps of "icon" and "title".
    QVariantList filters() const;
    int filter() const;
    QString filterName() const;
    ThemeRowsModel* rows() { return &rows_; }
    RowFinder* finder() { return &finder_; }
    StripImages* strips() { return &strips_; }
    /// Empty while the network is not wanted.
    QString networkLine() const;
    QString retry() const;
    QString newMark() const;
    QString listName() const;
    QString animatedHelp() const;
    QString deleteHelp() const;
    bool footerEnabled() const { return model_.footerEnabled(); }
    double scale() const { return model_.cursorScale(); }
    static double scaleFrom() { return PopoverModel::scaleRange.from; }
    static double scaleTo() { return PopoverModel::scaleRange.to; }
    static double scaleStep() { return PopoverModel::scaleRange.step; }
    static double scaleNotch() { return PopoverModel::scaleNotch; }
    int scalePercent() const { return static_cast<int>(model_.scalePercent()); }
    QString scaleText() const;
    /// Of a whole percentage on its way from one scale to the next.
    Q_INVOKABLE static QString percentText(int percent);
    QString scaleName() const;
    QString scaleIcon() const;
    /// The percentage's spring in the units of the views' own spring, which moves in steps of 16 ms.
    static double percentStiffness();
    static double percentFriction();
    QString systemDefault() const;
    QString systemDefaultHelp() const;
    bool systemDefaultInForce() const { return model_.systemDefaultInForce(); }
    QString systemDefaultIcon() const;
    /// Whether the toolkit reads announcements out.
    static bool announcesItself() { return hasAnnouncements(); }
    /// What is to be read out now; empty for nothing.
    QString announcement() const { return announcement_; }
    /// Nothing is read out any more.
    void silence();
    /// Empty while no theme shows.
    QString arrowText() const;
    QString reset() const;
    QString resetHelp() const;
    QString resetIcon() const;

    Q_INVOKABLE void openDownloadPage() { model_.openDownloadPage(); }
    /// `index` counts headerButtons() and filters().
    Q_INVOKABLE void pressHeader(int index);
    /// Presses the button that these keys of the toolkit's are the shortcut of; false when there is none.
    Q_INVOKABLE bool pressShortcut(int key, int modifiers);
    Q_INVOKABLE void selectFilter(int index);
    Q_INVOKABLE void tap(const QString& themeId) { model_.buttonAction(themeId.toStdString()); }
    Q_INVOKABLE void deleteTheme(const QString& themeId) { model_.deleteTheme(themeId.toStdString()); }
    /// What a key of the toolkit's means in the list: a map of "known", "marked" (-1 for no row), "taps" and
    /// "removes". Rows are counted from 0; `marked` is -1 while none is.
    Q_INVOKABLE static QVariantMap keyInList(int key, int marked, int entry, int count, int page,
                                             bool inSight);
    /// Puts a row of a list, which has its number as "index", between those that are made already: assistive
    /// programs read siblings in the order in which the toolkit keeps them, which is the one in which they
    /// were made.
    Q_INVOKABLE static void putInOrder(QQuickItem* row);
    Q_INVOKABLE void retryDownloads() { model_.retryDownloads(); }
    /// Puts the row's whole error on the clipboard; nothing when it has none.
    Q_INVOKABLE void copyError(const QString& themeId) const;
    Q_INVOKABLE void slide(double value) { model_.sliderChanged(value); }
    Q_INVOKABLE void resetToDefault() { model_.resetToDefault(); }
    Q_INVOKABLE void resetScale() { model_.resetScale(); }

  Q_SIGNALS:
    void changed();
    /// `announcement` is empty, and right after has its next value.
    void announced();

  private:
    PopoverModel& model_;
    ThemeRowsModel rows_;
    RowFinder finder_;
    StripImages strips_;
    QString announcement_;
    Subscription changed_;
    Subscription announced_;
};

}  // namespace pintle
