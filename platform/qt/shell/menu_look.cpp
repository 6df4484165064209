#include "platform/qt/shell/menu_look.h"

#include <QFont>

#include "platform/qt/shell/interface_font.h"

namespace pintle::shell {
namespace {

constexpr int kTextSize = 13;

struct Colours {
    const char* ground;
    const char* text;
    const char* key;
    const char* chosen;
    const char* line;
    const char* edge;
};

/// Opaque, since menus are not composed with what lies below them.
constexpr Colours kLight{"#F7F8F8", "#151F1E", "#55605E", "#E0E3E3", "#DDE0E0", "#CDD1D1"};
constexpr Colours kDark{"#1B1E1F", "#EEF1F1", "#A9B3B3", "#343738", "#323536", "#404344"};
constexpr Colours kStrongLight{"#FFFFFF", "#000000", "#000000", "#D0D4D4", "#000000", "#000000"};
constexpr Colours kStrongDark{"#000000", "#FFFFFF", "#FFFFFF", "#404545", "#FFFFFF", "#FFFFFF"};

}  // namespace

void dress(QMenu& menu, const DesktopLook& look) {
    const auto& colours =
        look.highContrast ? (look.dark ? kStrongDark : kStrongLight) : (look.dark ? kDark : kLight);
    QFont font(interfaceFont());
    font.setPixelSize(qRound(kTextSize * look.textScale));
    menu.setFont(font);
    // Rules for items leave out the column for marks that the style keeps free in every menu.
    menu.setStyleSheet(
        QStringLiteral("QMenu { background: %1; color: %2; border: 1px solid %6; padding: 4px; }"
                       "QMenu::item { padding: 5px 16px 5px 12px; border-radius: 4px; }"
                       "QMenu::item:selected { background: %4; color: %2; }"
                       "QMenu::item:disabled { color: %3; }"
                       "QMenu::separator { height: 1px; background: %5; margin: 4px 8px; }")
            .arg(QLatin1String(colours.ground), QLatin1String(colours.text), QLatin1String(colours.key),
                 QLatin1String(colours.chosen), QLatin1String(colours.line), QLatin1String(colours.edge)));
}

}  // namespace pintle::shell
