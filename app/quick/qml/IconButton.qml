// A button that is only a glyph, 28 by 28. `text` is its accessible name and, unless `tip` says more, its
// explanation. A `danger` button turns to the colour of danger under the pointer.
import QtQuick
import QtQuick.Templates as T

T.Button {
    id: button

    property string iconName
    property string symbol
    property string tip: text
    property real glyphSize: 20
    property bool danger: false
    /// The glyph stands for what matters here and has the accent's colour.
    property bool accented: false
    readonly property bool warned: danger && (hovered || pressed)

    implicitWidth: 28
    implicitHeight: 28
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    // Qt 6.4 offers the action and does nothing for it.
    Accessible.onPressAction: if (enabled && visible) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            glyph: button.iconName
            symbol: button.symbol
            size: button.glyphSize
            color: button.warned ? Theme.danger : button.accented ? Theme.accent : (button.hovered || button.pressed ? Theme.text : Theme.text2)
        }
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusInner
            color: Theme.dangerSoft
            opacity: button.warned ? 1 : 0
            Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        }
        Tint {
            radius: Theme.radiusInner
            visible: !button.danger
            hovered: button.hovered
            pressed: button.pressed
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusInner
            visible: button.danger && button.pressed
            color: Theme.dangerSoft
        }
        FocusRing { shown: button.visualFocus }
    }

    Tip {
        text: button.tip
        visible: button.tip !== "" && (button.hovered || button.visualFocus) && !button.pressed
    }
}
