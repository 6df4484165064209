// One choice out of a few, side by side in a well; the plate under the chosen one slides to the next. A radio
// group for the keyboard: one stop for Tab, arrows choose. Entries have `title` and `icon` (a drawing's name).
// The owner answers chosen(index) by setting `current`.
import QtQuick
import QtQuick.Templates as T

Item {
    id: bar

    property var entries: []
    property int current: 0
    property int columns: entries.length
    property real segmentHeight: Math.max(28, Math.round(20 * Theme.textScale) + 8)
    readonly property int rows: columns > 0 ? Math.ceil(entries.length / columns) : 0
    readonly property bool backwards: Qt.application.layoutDirection === Qt.RightToLeft
    /// What each segment needs; the spare width is shared equally.
    readonly property var lefts: layOut(width, columns, entries)

    signal chosen(int index)

    implicitHeight: rows * segmentHeight + 4
    Accessible.role: Accessible.Grouping

    component Slide: NumberAnimation {
        duration: Theme.slide
        easing.type: Easing.OutCubic
    }

    FontMetrics {
        id: metrics
        font.family: Theme.family
        font.pixelSize: Theme.sizeCaption
        font.weight: Font.Medium
    }

    // Left edges of the columns and, last, the right edge.
    function layOut(width: real, columns: int, entries: var): var {
        const inner = width - 4;
        const needs = [];
        for (let i = 0; i < columns; ++i) needs.push(0);
        for (let i = 0; i < entries.length; ++i) {
            const need = Theme.glyph(16) + 4 + metrics.advanceWidth(entries[i].title);
            needs[i % columns] = Math.max(needs[i % columns], need);
        }
        let sum = 0;
        for (let i = 0; i < columns; ++i) sum += needs[i];
        const spare = (inner - sum) / Math.max(1, columns);
        const edges = [2];
        for (let i = 0; i < columns; ++i) edges.push(Math.round(edges[i] + needs[i] + spare));
        edges[columns] = width - 2;
        return edges;
    }
    function columnOf(index: int): int { return index % Math.max(1, columns); }
    function xOf(index: int): real {
        const column = columnOf(index);
        if (column + 1 >= lefts.length) return 2;
        return backwards ? width - lefts[column + 1] : lefts[column];
    }
    function widthOf(index: int): real {
        const column = columnOf(index);
        return column + 1 < lefts.length ? lefts[column + 1] - lefts[column] : 0;
    }
    function yOf(index: int): real { return 2 + Math.floor(index / Math.max(1, columns)) * segmentHeight; }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusInner
        color: Theme.well
    }
    Rectangle {
        id: plate
        x: bar.xOf(bar.current)
        y: bar.yOf(bar.current)
        width: bar.widthOf(bar.current)
        height: bar.segmentHeight
        visible: bar.current >= 0
        radius: Theme.radiusSegment
        color: Theme.raised
        border.width: Theme.dark ? 0 : 1
        border.color: Theme.raisedEdge
        // Only a choice moves the plate; a new width or a new text size places it.
        property bool slides: false
        Behavior on x { enabled: plate.slides; Slide {} }
        Behavior on y { enabled: plate.slides; Slide {} }
        Behavior on width { enabled: plate.slides; Slide {} }
    }
    Timer {
        id: settle
        interval: Theme.slide + 20
        onTriggered: plate.slides = false
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
            width: bar.widthOf(index)
            height: bar.segmentHeight
            hoverEnabled: true
            focusPolicy: selected ? Qt.TabFocus : Qt.NoFocus
            text: modelData.title
            padding: 0
            // Checked by the owner alone: a press that toggles it is followed by what the owner says.
            autoExclusive: false
            checked: selected
            onToggled: checked = Qt.binding(() => segment.selected)
            onClicked: bar.take(index)
            // The role is the button's own kind; one given here would be ignored.
            Accessible.name: modelData.title
            Accessible.checkable: true
            Accessible.checked: selected
            Accessible.onPressAction: if (segment.enabled) bar.take(index)
            Accessible.onToggleAction: if (segment.enabled) bar.take(index)

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
                if (to < 0 || to >= bar.entries.length) return;
                repeater.itemAt(to).forceActiveFocus(Qt.TabFocusReason);
                bar.take(to);
            }

            contentItem: Item {
                Row {
                    anchors.centerIn: parent
                    spacing: 4
                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        glyph: segment.modelData.icon
                        size: Theme.glyph(16)
                        color: segment.selected ? Theme.accent : Theme.text2
                    }
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        textFormat: Text.PlainText
                        text: segment.modelData.title
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeCaption
                        font.weight: Font.Medium
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

    function take(index: int): void {
        if (index < 0 || index >= entries.length || index === current) return;
        plate.slides = true;
        settle.restart();
        chosen(index);
    }
}
