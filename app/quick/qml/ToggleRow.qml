// A setting that is on or off: glyph, title, subtitle and a switch. The whole row is the target. It does not
// flip by itself: `flipped` asks its owner, who answers with `on`.
import QtQuick
import QtQuick.Templates as T

T.CheckBox {
    id: row

    property string title
    property string subtitle
    property string symbol
    property bool on: false
    /// Without a line above it.
    property bool first: false

    signal flipped(bool on)

    implicitHeight: Math.max(56, texts.height + 20)
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    checked: on
    nextCheckState: () => checkState
    Accessible.checkable: true
    Accessible.name: title
    Accessible.description: subtitle
    Accessible.onPressAction: if (row.enabled) row.flipped(!row.on)
    Accessible.onToggleAction: if (row.enabled) row.flipped(!row.on)
    onClicked: flipped(!on)
    Keys.onReturnPressed: flipped(!on)
    Keys.onEnterPressed: flipped(!on)

    background: Item {
        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: 48
            anchors.rightMargin: 1
            height: 1
            visible: !row.first
            color: Theme.hairline
        }
    }
    contentItem: Item {
        Icon {
            id: glyph
            anchors.left: parent.left
            anchors.leftMargin: 16 - (width - 20) / 2
            anchors.verticalCenter: parent.verticalCenter
            symbol: row.symbol
            size: Theme.glyph(20)
            color: row.hovered || row.pressed ? Theme.text : Theme.text2
        }
        Column {
            id: texts
            anchors.left: parent.left
            anchors.leftMargin: 48
            anchors.right: toggle.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1
            Text {
                width: parent.width
                textFormat: Text.PlainText
                text: row.title
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Theme.sizeBody
                color: row.enabled ? Theme.text : Theme.text2
                Accessible.ignored: true
            }
            Text {
                width: parent.width
                textFormat: Text.PlainText
                text: row.subtitle
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Theme.sizeCaption
                color: Theme.text2
                Accessible.ignored: true
            }
        }
        ToggleSwitch {
            id: toggle
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            opacity: row.enabled ? 1 : 0.4
            checked: row.on
            hovered: row.hovered
            pressed: row.pressed
            focusShown: row.visualFocus
        }
    }
}
