// What has been typed to find a row, over the edge of the list. Keys are forwarded to it before the list and its
// rows see them.
import QtQuick

// Keys are forwarded only to what is visible.
Item {
    id: chip

    required property var finder
    readonly property bool stands: finder.typed !== ""

    /// A key has led to this row.
    signal found(int row)

    implicitWidth: typed.implicitWidth + 24
    implicitHeight: Math.max(24, typed.implicitHeight + 8)

    Rectangle {
        objectName: "findChip"
        anchors.fill: parent
        visible: chip.stands
        radius: height / 2
        color: Theme.tipBg
        Accessible.role: Accessible.StaticText
        Accessible.name: chip.finder.typed

        Text {
            id: typed
            anchors.verticalCenter: parent.verticalCenter
            x: 12
            width: parent.width - 24
            textFormat: Text.PlainText
            text: chip.finder.typed
            elide: Text.ElideLeft
            font.family: Theme.family
            font.pixelSize: Theme.sizeCaption
            font.weight: Font.Medium
            font.strikeout: chip.finder.row < 0
            color: Theme.tipText
            Accessible.ignored: true
        }
    }

    Keys.onPressed: event => {
        let taken = false;
        if (event.key === Qt.Key_Backspace) taken = finder.shorten();
        else if (event.key === Qt.Key_Escape) taken = finder.clear();
        else if (!(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)))
            taken = finder.type(event.text);
        event.accepted = taken;
        if (taken && finder.row >= 0) found(finder.row);
    }
}
