// The picture of a switch, 36 by 20. It takes no press itself: the row it stands in does.
import QtQuick

Item {
    id: toggle

    property bool checked: false
    property bool hovered: false
    property bool pressed: false
    property bool focusShown: false

    implicitWidth: 36
    implicitHeight: 20

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: toggle.checked ? Theme.accentFill : Theme.well
        border.width: toggle.checked ? 0 : 1
        border.color: Theme.iconRest
        Behavior on color { ColorAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
    }
    Rectangle {
        anchors.fill: parent
        radius: height / 2
        visible: toggle.checked
        color: toggle.pressed ? "#2E000000" : (toggle.hovered ? "#17000000" : "transparent")
    }
    Tint {
        radius: height / 2
        visible: !toggle.checked
        hovered: toggle.hovered
        pressed: toggle.pressed
    }
    Rectangle {
        readonly property real inset: toggle.checked ? 2 : 4
        readonly property bool atEnd: toggle.checked !== (Qt.application.layoutDirection === Qt.RightToLeft)
        width: parent.height - 2 * inset
        height: width
        radius: width / 2
        y: inset
        x: atEnd ? parent.width - width - inset : inset
        color: toggle.checked ? "#FFFFFF" : Theme.iconRest
        Behavior on x { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutCubic } }
        Behavior on width { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutCubic } }
    }
    FocusRing {
        outside: true
        corner: toggle.height / 2
        shown: toggle.focusShown
    }
}
