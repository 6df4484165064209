#include "app/quick/settings_adapter.h"

#include <algorithm>

#include "app/quick/translated.h"

namespace pintle {
namespace {

QString text(std::string_view characters) {
    return QString::fromUtf8(characters.data(), static_cast<qsizetype>(characters.size()));
}

QString nameOf(SettingsSectionKind kind) {
    switch (kind) {
        case SettingsSectionKind::startup:
            return QStringLiteral("startup");
        case SettingsSectionKind::behavior:
            return QStringLiteral("behavior");
        case SettingsSectionKind::interfaceStyle:
            return QStringLiteral("interfaceStyle");
        case SettingsSectionKind::cursorSize:
            return QStringLiteral("cursorSize");
        case SettingsSectionKind::exclusions:
            return QStringLiteral("exclusions");
        case SettingsSectionKind::reset:
            return QStringLiteral("reset");
    }
    return {};
}

}  // namespace

SettingsAdapter::SettingsAdapter(SettingsWindowModel& model)
    : model_(model), observer_(model.changed.observe([this] {
          followExcludedApps();
          Q_EMIT changed();
      })) {
    followExcludedApps();
}

QVariantList SettingsAdapter::sections() const {
    QVariantList list;
    for (const auto& section : model_.sections()) {
        QVariantList toggles;
        for (const auto& row : section.toggles)
            toggles.append(QVariantMap{{QStringLiteral("toggle"), static_cast<int>(row.toggle)},
                                       {QStringLiteral("symbol"), text(row.icon)},
                                       {QStringLiteral("title"), translated(row.title)},
                                       {QStringLiteral("subtitle"), translated(row.subtitle)},
                                       {QStringLiteral("enabled"), row.isEnabled}});
        list.append(QVariantMap{{QStringLiteral("kind"), nameOf(section.kind)},
                                {QStringLiteral("symbol"), text(section.symbol)},
                                {QStringLiteral("title"), translated(section.title)},
                                {QStringLiteral("toggles"), toggles}});
    }
    return list;
}

QVariantList SettingsAdapter::toggleStates() const {
    QVariantList states;
    for (int i = 0; i <= static_cast<int>(SettingsToggle::glassMode); ++i)
        states.append(model_.toggle(static_cast<SettingsToggle>(i)).isOn);
    return states;
}

QVariantMap SettingsAdapter::texts() const {
    return {{QStringLiteral("glassOpacity"), translated(settings_text::glassOpacity)},
            {QStringLiteral("needsCompositor"), translated(settings_text::needsCompositor)},
            {QStringLiteral("cursorSize"), translated(settings_text::cursorSize)},
            {QStringLiteral("exclusionsExplanation"), translated(model_.exclusionsExplanation())},
            {QStringLiteral("addHelp"), translated(settings_text::addHelp)},
            {QStringLiteral("placeholder"), translated(settings_text::placeholder)},
            {QStringLiteral("cancel"), translated(settings_text::cancel)},
            {QStringLiteral("noExclusions"), translated(settings_text::noExclusions)},
            {QStringLiteral("trashSymbol"), text(symbol::trash)},
            {QStringLiteral("pointerSymbol"), text(symbol::pointer)},
            {QStringLiteral("resetExplanation"), translated(settings_text::resetExplanation)},
            {QStringLiteral("resetButton"), translated(settings_text::resetButton)}};
}

QString SettingsAdapter::glassOpacityText() const { return translated(model_.glassOpacityText()); }

QString SettingsAdapter::cursorScaleText() const { return translated(model_.cursorScaleText()); }

QVariantList SettingsAdapter::scales() const {
    QVariantList list;
    for (const auto& button : model_.scaleButtons())
        list.append(QVariantMap{{QStringLiteral("scale"), button.scale},
                                {QStringLiteral("title"), translated(button.title)}});
    return list;
}

int SettingsAdapter::selectedScale() const {
    const auto buttons = model_.scaleButtons();
    const auto selected = std::ranges::find(buttons, true, &SettingsScaleButton::isSelected);
    return selected == buttons.end() ? -1 : static_cast<int>(selected - buttons.begin());
}

QString SettingsAdapter::addButtonSymbol() const { return text(model_.addButtonSymbol()); }

void SettingsAdapter::setToggle(int toggle, bool isOn) {
    if (toggle < 0 || toggle > static_cast<int>(SettingsToggle::glassMode)) return;
    model_.setToggle(static_cast<SettingsToggle>(toggle), isOn);
}

QString SettingsAdapter::removeLabel(const QString& name) {
    return translated(SettingsWindowModel::removeLabel(name.toStdString()));
}

void SettingsAdapter::followExcludedApps() {
    QStringList now;
    for (const auto& name : model_.excludedApps()) now.append(QString::fromStdString(name));
    const auto before = excludedApps_.stringList();
    if (now == before) return;
    const auto common = std::min(now.size(), before.size());
    qsizetype head = 0;
    while (head < common && now[head] == before[head]) ++head;
    qsizetype tail = 0;
    while (tail < common - head && now[now.size() - 1 - tail] == before[before.size() - 1 - tail]) ++tail;
    const auto first = static_cast<int>(head);
    if (const auto gone = static_cast<int>(before.size() - head - tail); gone > 0)
        excludedApps_.removeRows(first, gone);
    for (auto row = head; row < now.size() - tail; ++row) {
        excludedApps_.insertRows(static_cast<int>(row), 1);
        excludedApps_.setData(excludedApps_.index(static_cast<int>(row)), now[row], Qt::DisplayRole);
    }
}

}  // namespace pintle
