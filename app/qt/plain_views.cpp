#include "app/qt/plain_views.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QStringList>
#include <map>
#include <utility>

namespace pintle {
namespace {

class PlainView : public QRasterWindow {
  public:
    PlainView() {
        QSurfaceFormat alpha = format();
        alpha.setAlphaBufferSize(8);
        setFormat(alpha);
    }
    void say(const QString& text) {
        text_ = text;
        update();
    }
    void setShape(const QMargins& shadow, int radius) {
        shadow_ = shadow;
        radius_ = radius;
        update();
    }
    std::function<void()> accepted;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
        const QRect panel = QRect(QPoint(), size()).marginsRemoved(shadow_);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0xF7, 0xF8, 0xF8));
        painter.drawRoundedRect(panel, radius_, radius_);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(Qt::black);
        painter.drawText(panel.marginsRemoved({16, 16, 16, 16}), Qt::AlignTop | Qt::TextWordWrap, text_);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) close();
        if (event->key() == Qt::Key_Return && accepted) accepted();
    }

  private:
    QString text_;
    QMargins shadow_;
    int radius_ = 0;
};

class PlainViews : public ShellViews {
  public:
    void setComposited(bool composited) override {
        composited_ = composited;
        if (popover_) shapePopover();
    }
    QWindow* popover() override {
        if (!popover_) {
            popover_ = std::make_unique<PlainView>();
            popover_->say(QStringLiteral("Pintle"));
            shapePopover();
        }
        return popover_.get();
    }
    PopoverShape popoverShape() const override { return {{24, 24, 24, 24}, 12}; }
    QWindow* window(WindowContent content) override {
        auto& view = windows_[content];
        if (!view) view = std::make_unique<PlainView>();
        return view.get();
    }
    QWindow* alert(const Alert& alert, std::function<void(int)> chosen) override {
        if (!alert_) alert_ = std::make_unique<PlainView>();
        QStringList buttons;
        for (const auto& button : alert.buttons) buttons += QString::fromStdString(button);
        alert_->say(QString::fromStdString(alert.message + "\n\n" + alert.informativeText + "\n\n") +
                    buttons.join(QStringLiteral(" | ")));
        alert_->accepted = [chosen = std::move(chosen)] { chosen(0); };
        alert_->resize(360, 160);
        return alert_.get();
    }

  private:
    void shapePopover() {
        popover_->setShape(composited_ ? popoverShape().shadow : QMargins(), composited_ ? 12 : 0);
    }

    bool composited_ = false;
    std::unique_ptr<PlainView> popover_;
    std::map<WindowContent, std::unique_ptr<PlainView>> windows_;
    std::unique_ptr<PlainView> alert_;
};

}  // namespace

std::unique_ptr<ShellViews> makePlainViews() { return std::make_unique<PlainViews>(); }

}  // namespace pintle
