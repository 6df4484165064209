#include "app/quick/popover_facade.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>
#include <QVariantMap>

#include <numbers>

#include "app/list_keys.h"
#include "app/quick/symbol_icons.h"
#include "app/quick/translated.h"

namespace pintle {
namespace {

constexpr double springStep = 0.016;
constexpr double angularFrequency = 2 * std::numbers::pi / PopoverModel::percentSpringResponse;

std::optional<ListKey> listKey(int key) {
    switch (key) {
        case Qt::Key_Down:
            return ListKey::down;
        case Qt::Key_Up:
            return ListKey::up;
        case Qt::Key_Home:
            return ListKey::home;
        case Qt::Key_End:
            return ListKey::end;
        case Qt::Key_PageDown:
            return ListKey::pageDown;
        case Qt::Key_PageUp:
            return ListKey::pageUp;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            return ListKey::tap;
        case Qt::Key_Delete:
            return ListKey::remove;
        default:
            return std::nullopt;
    }
}

QString icon(std::string_view symbol) {
    const auto name = iconOfSymbol(symbol);
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

void PopoverFacade::putInOrder(QQuickItem* row) {
    if (!row || !row->parentItem()) return;
    const int number = row->property("index").toInt();
    const auto siblings = row->parentItem()->childItems();
    for (auto* const other : siblings) {
        const auto index = other->property("index");
        if (other == row || !index.isValid() || index.toInt() < number) continue;
        row->stackBefore(other);
        return;
    }
}

PopoverFacade::PopoverFacade(PopoverModel& model, PreviewImages& previews, QObject* parent)
    : QObject(parent),
      model_(model),
      rows_(model, previews),
      finder_(model),
      strips_(model),
      changed_(model.changed.observe([this] { Q_EMIT changed(); })),
      announced_(model.announced.observe([this](const std::vector<UserText>& texts) {
          silence();
          announcement_ = joined(texts);
          Q_EMIT announced();
      })) {}

void PopoverFacade::silence() {
    announcement_.clear();
    Q_EMIT announced();
}

QString PopoverFacade::title() const { return translated(PopoverModel::title()); }
QString PopoverFacade::logo() const { return icon(PopoverModel::logo); }

QString PopoverFacade::update() const {
    const auto button = model_.updateButton();
    return button ? translated(*button) : QString();
}

QString PopoverFacade::updateIcon() const { return icon(symbol::update); }

QVariantList PopoverFacade::headerButtons() const {
    QVariantList buttons;
    for (const auto& button : PopoverModel::headerButtons())
        buttons.append(QVariantMap{{"icon", icon(button.symbol)}, {"name", translated(button.name)}});
    return buttons;
}

QString PopoverFacade::unavailable() const {
    const auto sentence = model_.unavailable();
    return sentence ? translated(*sentence) : QString();
}

QVariantList PopoverFacade::filters() const {
    QVariantList filters;
    for (const auto& button : model_.filterButtons())
        filters.append(QVariantMap{{"icon", icon(button.icon)}, {"title", translated(button.title)}});
    return filters;
}

int PopoverFacade::filter() const {
    const auto buttons = model_.filterButtons();
    for (std::size_t index = 0; index < buttons.size(); ++index)
        if (buttons[index].isSelected) return static_cast<int>(index);
    return -1;
}

QString PopoverFacade::filterName() const { return translated(popover_text::filterName); }
QString PopoverFacade::networkLine() const {
    const auto line = model_.networkLine();
    return line ? translated(*line) : QString();
}

QString PopoverFacade::retry() const { return translated(popover_text::retry); }
QString PopoverFacade::newMark() const { return translated(row_text::isNew); }

void PopoverFacade::copyError(const QString& themeId) const {
    const auto error = model_.row(themeId.toStdString()).errorTooltip;
    if (error) QGuiApplication::clipboard()->setText(QString::fromStdString(*error));
}

QString PopoverFacade::listName() const { return translated(popover_text::listName); }
QString PopoverFacade::animatedHelp() const { return translated(row_text::animatedHelp); }
QString PopoverFacade::deleteHelp() const { return translated(row_text::deleteHelp); }
QString PopoverFacade::scaleText() const { return translated(model_.scaleText()); }
QString PopoverFacade::percentText(int percent) { return translated(pintle::percentText(percent / 100.0)); }
QString PopoverFacade::scaleName() const { return translated(popover_text::scaleName); }
QString PopoverFacade::scaleIcon() const { return icon(symbol::scale); }

double PopoverFacade::percentStiffness() { return angularFrequency * angularFrequency * springStep; }

double PopoverFacade::percentFriction() {
    return 2 * PopoverModel::percentSpringDamping * angularFrequency * springStep;
}

QString PopoverFacade::systemDefault() const { return translated(popover_text::systemDefault); }
QString PopoverFacade::systemDefaultHelp() const { return translated(model_.systemDefaultHelp()); }
QString PopoverFacade::systemDefaultIcon() const { return icon(PopoverModel::systemDefaultSymbol); }

QString PopoverFacade::arrowText() const {
    const auto text = model_.arrowText();
    return text ? translated(*text) : QString();
}

QString PopoverFacade::reset() const { return translated(popover_text::reset); }
QString PopoverFacade::resetHelp() const { return translated(popover_text::resetHelp); }
QString PopoverFacade::resetIcon() const { return icon(PopoverModel::resetSymbol); }

QVariantMap PopoverFacade::keyInList(int key, int marked, int entry, int count, int page, bool inSight) {
    const auto known = listKey(key);
    if (!known) return {{"known", false}};
    const auto answer = answerKey(*known, {.marked = marked < 0 ? std::nullopt : std::optional(marked),
                                           .entry = entry,
                                           .count = count,
                                           .page = page,
                                           .inSight = inSight});
    return {{"known", true},
            {"marked", answer.marked.value_or(-1)},
            {"taps", answer.act == ListAnswer::Act::tap},
            {"removes", answer.act == ListAnswer::Act::remove}};
}

void PopoverFacade::pressHeader(int index) {
    const auto buttons = PopoverModel::headerButtons();
    if (index >= 0 && index < static_cast<int>(buttons.size()))
        model_.press(buttons[static_cast<std::size_t>(index)].request);
}

bool PopoverFacade::pressShortcut(int key, int modifiers) {
    const auto pressed = QKeyCombination::fromCombined(key | (modifiers & ~int(Qt::KeypadModifier)));
    for (const auto& button : PopoverModel::headerButtons()) {
        const auto keys = QString::fromUtf8(button.shortcut.data(), qsizetype(button.shortcut.size()));
        if (QKeySequence(keys) != QKeySequence(pressed)) continue;
        model_.press(button.request);
        return true;
    }
    return false;
}

void PopoverFacade::selectFilter(int index) {
    const auto buttons = model_.filterButtons();
    if (index >= 0 && index < static_cast<int>(buttons.size()))
        model_.select(buttons[static_cast<std::size_t>(index)].filter);
}

}  // namespace pintle
