// One line above the list that says that the network was wanted, with a way to try again.
import QtQuick

Rectangle {
    id: line

    property string text
    property string retry

    signal retried()

    implicitHeight: Math.max(button.implicitHeight, sentence.implicitHeight) + 12
    radius: Theme.radiusInner
    color: Theme.dangerSoft
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Text {
        id: sentence
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: button.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        textFormat: Text.PlainText
        text: line.text
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.family
        font.pixelSize: Theme.sizeCaption
        color: Theme.text
        Accessible.ignored: true
    }
    PushButton {
        id: button
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        leftPadding: 10
        rightPadding: 10
        text: line.retry
        onClicked: line.retried()
        Keys.onReturnPressed: line.retried()
        Keys.onEnterPressed: line.retried()
    }
}
