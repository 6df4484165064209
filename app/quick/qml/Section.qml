// A titled group of the settings and about windows: glyph and title, what stands at the end of the title's line,
// and a card with the content.
import QtQuick

Item {
    id: section

    property string title
    property string symbol
    property string value
    default property alias content: column.data

    implicitHeight: heading.height + 8 + card.height
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Item {
        id: heading
        width: parent.width
        height: Math.max(20, label.implicitHeight)
        Icon {
            id: glyph
            anchors.left: parent.left
            anchors.leftMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            symbol: section.symbol
            size: Theme.glyph(16)
            color: Theme.accent
        }
        Text {
            id: label
            anchors.left: parent.left
            anchors.leftMargin: glyph.width + 12
            anchors.right: number.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            textFormat: Text.PlainText
            text: section.title
            elide: Text.ElideRight
            font.family: Theme.family
            font.pixelSize: Theme.sizeBody
            font.weight: Font.DemiBold
            color: Theme.text
            horizontalAlignment: Text.AlignLeft
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            id: number
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            textFormat: Text.PlainText
            text: section.value
            font.family: Theme.family
            font.pixelSize: Theme.sizeBody
            font.weight: Font.Medium
            color: Theme.text
        }
    }
    Rectangle {
        id: card
        y: heading.height + 8
        width: parent.width
        height: column.height
        radius: Theme.radius
        color: Theme.card
        border.width: 1
        border.color: Theme.hairline
        Column {
            id: column
            width: parent.width
        }
    }
}
