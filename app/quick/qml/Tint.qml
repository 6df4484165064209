// What hover and press lay over a surface.
import QtQuick

Rectangle {
    property bool hovered: false
    property bool pressed: false

    anchors.fill: parent
    color: pressed ? Theme.press : (hovered ? Theme.hover : "transparent")
    Behavior on color { ColorAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
}
