// A button with a text and, if it has one, a glyph before it. `danger` is for what cannot be undone.
import QtQuick
import QtQuick.Templates as T

T.Button {
    id: button

    property string iconName
    property string symbol
    property bool danger: false
    /// What it would bring about is so already.
    property bool inForce: false
    /// The answer that Return gives.
    property bool prominent: false
    readonly property bool hasGlyph: iconName !== "" || symbol !== ""

    /// What the glyph and its gap take of the width.
    readonly property real glyphWidth: hasGlyph ? glyphRoom : 0
    readonly property real glyphRoom: Theme.glyph(16) + 8
    readonly property real textWidth: label.implicitWidth

    implicitWidth: label.implicitWidth + glyphWidth + leftPadding + rightPadding
    implicitHeight: Math.max(danger ? 32 : 28, label.implicitHeight + 8)
    leftPadding: 12
    rightPadding: 12
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    // Qt 6.4 offers the action and does nothing for it.
    Accessible.onPressAction: if (enabled && visible) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 8
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.hasGlyph
                glyph: button.iconName
                symbol: button.symbol
                size: Theme.glyph(16)
                color: button.inForce ? Theme.accent : label.color
            }
            Text {
                id: label
                width: Math.min(implicitWidth, button.availableWidth - button.glyphWidth)
                textFormat: Text.PlainText
                text: button.text
                elide: Text.ElideRight
                font.family: Theme.family
                font.pixelSize: Theme.sizeBody
                font.weight: Font.Medium
                color: !button.enabled ? Theme.iconRest : button.danger ? Theme.dangerInk
                     : button.prominent ? "#FFFFFF" : Theme.text
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.radiusInner
        color: button.danger ? Theme.dangerSoft : button.prominent ? Theme.accentFill
             : button.inForce ? Theme.accentSoft : Theme.well
        border.width: button.inForce ? 1 : 0
        border.color: Theme.accent
        Tint {
            visible: !button.danger
            radius: Theme.radiusInner
            hovered: button.hovered
            pressed: button.pressed
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusInner
            color: Theme.dangerSoft
            opacity: button.danger ? (button.pressed ? 1 : (button.hovered ? 0.5 : 0)) : 0
            Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        }
        FocusRing {
            outside: true
            shown: button.visualFocus
        }
    }
}
