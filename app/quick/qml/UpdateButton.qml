// The pill that leads to a newer version.
import QtQuick
import QtQuick.Templates as T

T.Button {
    id: button

    property string iconName
    /// As wide as it is asked to be, in place of a pill.
    property bool wide: false

    implicitWidth: words.implicitWidth + Theme.glyph(16) + 4 + 20
    implicitHeight: wide ? Math.max(32, words.implicitHeight + 12) : 28
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
            spacing: 4
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                glyph: button.iconName
                size: Theme.glyph(16)
                color: Theme.accent
            }
            Text {
                id: words
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, button.width - Theme.glyph(16) - 4 - 20)
                elide: Text.ElideRight
                textFormat: Text.PlainText
                text: button.text
                font.family: Theme.family
                font.pixelSize: Theme.sizeCaption
                font.weight: Font.DemiBold
                color: Theme.accentInk
                Accessible.ignored: true
            }
        }
    }
    Tip {
        text: button.text
        visible: words.truncated && (button.hovered || button.visualFocus) && !button.pressed
    }
    background: Item {
        Rectangle {
            id: pill
            anchors.fill: parent
            anchors.topMargin: button.wide ? 0 : 2
            anchors.bottomMargin: button.wide ? 0 : 2
            radius: button.wide ? Theme.radiusInner : height / 2
            color: Theme.accentSoft
            Tint {
                radius: pill.radius
                hovered: button.hovered
                pressed: button.pressed
            }
            FocusRing {
                corner: pill.radius
                shown: button.visualFocus
            }
        }
    }
}
