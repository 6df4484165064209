// The mark of the keyboard's focus: inside its parent, or outside with a gap of 2.
import QtQuick

Rectangle {
    property bool shown: false
    property bool outside: false
    /// The corner of what is ringed.
    property real corner: Theme.radiusInner

    anchors.fill: parent
    anchors.margins: outside ? -4 : 0
    radius: outside ? corner + 4 : corner
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    visible: opacity > 0
    opacity: shown ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
}
