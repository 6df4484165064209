// One calm sentence that stands for what cannot be had.
import QtQuick

Rectangle {
    id: notice

    property string text

    implicitHeight: sentence.implicitHeight + 20
    radius: Theme.radiusInner
    color: Theme.well
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Icon {
        id: glyph
        anchors.left: parent.left
        anchors.leftMargin: 12
        y: 10
        glyph: "about"
        size: Theme.glyph(16)
    }
    Text {
        id: sentence
        anchors.left: glyph.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 10
        textFormat: Text.PlainText
        text: notice.text
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.family
        font.pixelSize: Theme.sizeCaption
        lineHeight: 1.15
        color: Theme.text
        Accessible.ignored: true
    }
}
