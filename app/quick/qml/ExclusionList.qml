// The names of the applications that keep their own pointers: explanation and the button of the entry field, the
// field, and a row for each name.
import QtQuick

Column {
    id: list

    required property QtObject model

    /// Where the keyboard goes when the row that had it is gone: the row that took its place, the last one, or
    /// the button above.
    function focusNear(index: int) {
        const rows = names.count;
        const to = rows > 0 ? names.itemAt(Math.min(index, rows - 1)).button : addButton;
        to.forceActiveFocus(Qt.TabFocusReason);
    }
    function openField(reason: int) {
        field.forceActiveFocus(reason);
    }

    Item {
        width: parent.width
        height: Math.max(44, explanation.height + 20)
        Text {
            id: explanation
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: addButton.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            textFormat: Text.PlainText
            text: list.model.texts.exclusionsExplanation
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            font.family: Theme.family
            font.pixelSize: Theme.sizeCaption
            color: Theme.text2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        IconButton {
            id: addButton
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: Math.max(28, glyphSize + 8)
            implicitHeight: implicitWidth
            glyphSize: Theme.glyph(20)
            symbol: list.model.addButtonSymbol
            text: list.model.texts.addHelp
            accented: true
            enabled: list.model.exclusionsEnabled
            onClicked: {
                list.model.toggleAddAppField();
                if (list.model.showAddAppField) list.openField(Qt.TabFocusReason);
            }
        }
    }
    Item {
        id: entry
        width: parent.width
        height: list.model.showAddAppField ? field.height + 8 : 0
        visible: height > 0
        clip: height < field.height
        opacity: list.model.showAddAppField ? 1 : 0
        Behavior on height { NumberAnimation { duration: Theme.slide; easing.type: Easing.OutCubic } }
        Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        EntryField {
            id: field
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.right: cancel.left
            anchors.rightMargin: 8
            enabled: list.model.showAddAppField
            placeholder: list.model.texts.placeholder
            text: list.model.newAppName
            // Not textEdited: an assistive program sets the text.
            onTextChanged: if (text !== list.model.newAppName) list.model.newAppName = text
            onAccepted: {
                list.model.addExcludedApp();
                if (!list.model.showAddAppField) addButton.forceActiveFocus(Qt.TabFocusReason);
            }
            Keys.onEscapePressed: cancel.clicked()
        }
        PushButton {
            id: cancel
            anchors.right: parent.right
            anchors.rightMargin: 12
            height: field.height
            enabled: list.model.showAddAppField
            text: list.model.texts.cancel
            onClicked: {
                list.model.cancelAddApp();
                addButton.forceActiveFocus(visualFocus || field.activeFocus ? Qt.TabFocusReason : Qt.MouseFocusReason);
            }
        }
    }
    Column {
        width: parent.width
        Accessible.role: Accessible.List
        Accessible.name: list.model.texts.exclusionsExplanation
        add: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.slide } }
        move: Transition { NumberAnimation { property: "y"; duration: Theme.slide; easing.type: Easing.OutCubic } }
        Repeater {
            id: names
            model: list.model.excludedApps
            delegate: Item {
                id: row
                required property string display
                required property int index
                property alias button: remove
                width: list.width
                height: Math.max(40, name.height + 16)
                Accessible.role: Accessible.ListItem
                Accessible.name: display
                Rectangle {
                    anchors.left: parent.left
                    anchors.leftMargin: row.index > 0 ? 16 : 1
                    anchors.right: parent.right
                    anchors.rightMargin: 1
                    height: 1
                    color: Theme.hairline
                }
                Text {
                    id: name
                    anchors.left: parent.left
                    anchors.leftMargin: 16
                    anchors.right: remove.left
                    anchors.rightMargin: 8
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.display
                    textFormat: Text.PlainText
                    elide: Text.ElideMiddle
                    maximumLineCount: 1
                    horizontalAlignment: Text.AlignLeft
                    font.family: Theme.family
                    font.pixelSize: Theme.sizeBody
                    color: Theme.text
                    Accessible.ignored: true
                }
                IconButton {
                    id: remove
                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: list.model.texts.trashSymbol
                    implicitWidth: Math.max(28, glyphSize + 8)
                    implicitHeight: implicitWidth
                    glyphSize: Theme.glyph(18)
                    danger: true
                    text: list.model.removeLabel(row.display)
                    onClicked: {
                        // The row goes, and with it everything that this function could look at afterwards.
                        const owner = list;
                        const at = row.index;
                        const keyboard = visualFocus;
                        owner.model.removeExcludedApp(row.display);
                        if (keyboard) owner.focusNear(at);
                    }
                }
            }
        }
    }
    Item {
        width: parent.width
        height: Math.max(48, none.height + 16)
        visible: names.count === 0
        Rectangle {
            x: 1
            width: parent.width - 2
            height: 1
            color: Theme.hairline
        }
        Text {
            id: none
            anchors.centerIn: parent
            width: parent.width - 32
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            text: list.model.texts.noExclusions
            font.family: Theme.family
            font.pixelSize: Theme.sizeBody
            color: Theme.text2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
