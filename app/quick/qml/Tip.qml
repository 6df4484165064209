// The explanation of a control, shown beside it after the pointer or the keyboard has rested on it.
import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: tip

    x: Math.round((parent.width - implicitWidth) / 2)
    y: parent.height + 4
    margins: 4
    implicitWidth: Math.min(280, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 8
    rightPadding: 8
    topPadding: 4
    bottomPadding: 4
    delay: 600
    timeout: -1
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        textFormat: Text.PlainText
        text: tip.text
        font.family: Theme.family
        font.pixelSize: Theme.sizeCaption
        color: Theme.tipText
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.radiusSegment
        color: Theme.tipBg
    }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick } }
}
