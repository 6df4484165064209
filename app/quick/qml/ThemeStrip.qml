// A theme's cursors side by side; those that move do as they would on the screen, unless motion is reduced.
import QtQuick

Row {
    id: strip

    property var cursors: []
    property real side: 18
    /// Whether anybody can see it now.
    property bool seen: true

    spacing: Math.round(side / 2)
    height: side

    Repeater {
        model: strip.cursors
        delegate: Item {
            id: cell

            required property var modelData
            property int frame: 0

            objectName: "stripCursor"
            width: strip.side
            height: strip.side
            clip: true

            Image {
                y: -cell.frame * strip.side
                width: strip.side
                height: strip.side * cell.modelData.frames
                source: cell.modelData.source
                sourceSize: Qt.size(strip.side, strip.side * cell.modelData.frames)
                asynchronous: true
                smooth: false
                Accessible.ignored: true
            }
            Timer {
                interval: cell.modelData.interval
                repeat: true
                running: strip.visible && strip.seen && Theme.motion && cell.modelData.frames > 1
                onTriggered: cell.frame = (cell.frame + 1) % cell.modelData.frames
            }
        }
    }
}
