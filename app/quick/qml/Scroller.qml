// The scroller of a list or page: 4 wide, wider under the pointer.
import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: bar

    implicitWidth: 8
    padding: 2
    minimumSize: 0.08
    visible: size < 1
    Accessible.ignored: true

    contentItem: Item {
        implicitWidth: 4
        Rectangle {
            anchors.right: bar.mirrored ? undefined : parent.right
            anchors.left: bar.mirrored ? parent.left : undefined
            height: parent.height
            width: bar.hovered || bar.pressed ? 6 : 4
            radius: width / 2
            color: Theme.iconRest
            opacity: bar.pressed ? 0.9 : (bar.hovered ? 0.7 : 0.4)
            Behavior on opacity { NumberAnimation { duration: Theme.quick } }
        }
    }
}
