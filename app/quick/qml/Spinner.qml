// A turning ring for work without a known end; a still three-quarter ring where motion is reduced.
import QtQuick

Item {
    id: spinner

    property real size: 18
    property bool running: visible

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Icon {
        anchors.fill: parent
        glyph: "circle"
        size: spinner.size
        color: Theme.outline
    }
    Icon {
        anchors.fill: parent
        glyph: Theme.motion ? "ring-quarter" : "ring-three-quarters"
        size: spinner.size
        color: Theme.accent
        RotationAnimator on rotation {
            running: spinner.running && Theme.motion
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
        }
    }
}
