// The popover's first line: logo and name, the update, and the three ways out of the popover.
import QtQuick

Item {
    id: header

    required property var popover
    /// At large text sizes the update stands in the list's head instead.
    property bool showsUpdate: true

    implicitHeight: Math.max(48, Math.round(Theme.sizeBody * 1.4) + 20)

    Icon {
        id: logo
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        glyph: header.popover.logo
        size: Theme.glyph(20)
        color: Theme.accent
    }
    Text {
        id: title
        anchors.left: logo.right
        anchors.leftMargin: 8
        anchors.right: buttons.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        textFormat: Text.PlainText
        text: header.popover.title
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.family
        font.pixelSize: Theme.sizeBody
        font.weight: Font.DemiBold
        color: Theme.text
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        UpdateButton {
            visible: header.showsUpdate && text !== ""
            // What logo, name and the three buttons leave.
            width: Math.min(implicitWidth, header.width - 148 - logo.width - Math.ceil(title.implicitWidth))
            text: header.popover.update
            iconName: header.popover.updateIcon
            onClicked: header.popover.openDownloadPage()
        }
        Item {
            visible: header.showsUpdate && header.popover.update !== ""
            width: 4
            height: 1
        }
        Repeater {
            model: header.popover.headerButtons
            IconButton {
                required property var modelData
                required property int index
                iconName: modelData.icon
                text: modelData.name
                glyphSize: Theme.glyph(20)
                onClicked: header.popover.pressHeader(index)
            }
        }
    }
}
