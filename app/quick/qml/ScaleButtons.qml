// The sizes to choose from, side by side in a well, each with a pointer of its size. A radio group whose choice
// is the owner's: `chosen` asks, `current` answers; pressing the chosen one asks again.
import QtQuick
import QtQuick.Templates as T

Item {
    id: bar

    /// With `scale` and `title`.
    property var entries: []
    property int current: -1
    property string name
    property string symbol
    readonly property real need: glyphSize(1.5) + 6 + metrics.advanceWidth("000%") + 12
    readonly property int columns: (width - 4) / entries.length >= need ? entries.length : 2
    readonly property int rows: Math.ceil(entries.length / columns)
    readonly property real segmentHeight: Math.max(32, Math.round(20 * Theme.textScale) + 12)
    readonly property real segmentWidth: (width - 4) / columns
    readonly property bool backwards: LayoutMirroring.enabled

    signal chosen(real scale)

    implicitHeight: rows * segmentHeight + 4
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    function xOf(index: int): real {
        const column = index % columns;
        return 2 + (backwards ? columns - 1 - column : column) * segmentWidth;
    }
    function yOf(index: int): real { return 2 + Math.floor(index / columns) * segmentHeight; }
    /// 14 for the size as it is; all grow with the text until the largest stands at 28.
    function glyphSize(scale: real): real {
        return Math.round(14 * scale * Math.min(Theme.textScale, 28 / 21));
    }
    function take(index: int) {
        // The keyboard goes first, because what has it cannot cease to be a stop of Tab.
        for (let i = 0; i < repeater.count; ++i) {
            if (i !== index && repeater.itemAt(i).activeFocus)
                repeater.itemAt(index).forceActiveFocus(repeater.itemAt(i).focusReason);
        }
        plate.slides = true;
        settle.restart();
        chosen(entries[index].scale);
    }

    FontMetrics {
        id: metrics
        font.family: Theme.family
        font.pixelSize: Theme.sizeBody
        font.weight: Font.DemiBold
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusInner
        color: Theme.well
    }
    // Slides to a choice, but stands still when the window is laid out anew.
    Timer {
        id: settle
        interval: Theme.slide
        onTriggered: plate.slides = false
    }
    Rectangle {
        id: plate
        property bool slides: false
        visible: bar.current >= 0
        x: bar.xOf(Math.max(0, bar.current))
        y: bar.yOf(Math.max(0, bar.current))
        width: bar.segmentWidth
        height: bar.segmentHeight
        radius: Theme.radiusSegment
        color: Theme.raised
        border.width: 1
        border.color: Theme.raisedEdge
        Behavior on x { enabled: plate.slides; NumberAnimation { duration: Theme.slide; easing.type: Easing.OutCubic } }
        Behavior on y { enabled: plate.slides; NumberAnimation { duration: Theme.slide; easing.type: Easing.OutCubic } }
    }
    Repeater {
        id: repeater
        model: bar.entries
        delegate: T.RadioButton {
            id: segment

            required property var modelData
            required property int index
            readonly property bool selected: index === bar.current

            x: bar.xOf(index)
            y: bar.yOf(index)
            width: bar.segmentWidth
            height: bar.segmentHeight
            hoverEnabled: true
            // One stop for Tab: the chosen one, or the first where none is.
            focusPolicy: selected || (bar.current < 0 && index === 0) ? Qt.TabFocus : Qt.NoFocus
            checked: selected
            Accessible.name: modelData.title
            Accessible.onPressAction: if (segment.enabled) bar.take(index)
            Accessible.onToggleAction: if (segment.enabled) bar.take(index)
            onClicked: bar.take(index)
            Keys.onReturnPressed: bar.take(index)
            Keys.onEnterPressed: bar.take(index)
            Keys.onPressed: event => {
                const back = bar.backwards ? Qt.Key_Right : Qt.Key_Left;
                const on = bar.backwards ? Qt.Key_Left : Qt.Key_Right;
                const line = bar.rows > 1 ? bar.columns : 1;
                let to;
                if (event.key === back) to = index - 1;
                else if (event.key === on) to = index + 1;
                else if (event.key === Qt.Key_Up) to = index - line;
                else if (event.key === Qt.Key_Down) to = index + line;
                else if (event.key === Qt.Key_Home) to = 0;
                else if (event.key === Qt.Key_End) to = bar.entries.length - 1;
                else return;
                event.accepted = true;
                if (to < 0 || to >= bar.entries.length || to === index) return;
                repeater.itemAt(to).forceActiveFocus(Qt.TabFocusReason);
                bar.take(to);
            }

            contentItem: Item {
                Row {
                    anchors.centerIn: parent
                    spacing: 6
                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: bar.symbol
                        size: bar.glyphSize(segment.modelData.scale)
                        color: segment.selected ? Theme.accent : Theme.text2
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        textFormat: Text.PlainText
                        text: segment.modelData.title
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeBody
                        font.weight: segment.selected ? Font.DemiBold : Font.Normal
                        color: segment.selected ? Theme.text : Theme.text2
                        Accessible.ignored: true
                    }
                }
            }
            background: Item {
                Tint {
                    radius: Theme.radiusSegment
                    visible: !segment.selected
                    hovered: segment.hovered
                    pressed: segment.pressed
                }
                FocusRing {
                    corner: Theme.radiusSegment
                    shown: segment.visualFocus
                }
            }
        }
    }
}
