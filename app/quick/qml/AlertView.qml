// A question or a message: icon, texts, and the buttons at the end of the last line, the first one last. In
// the size it wants; texts that are too long for the window scroll.
import QtQuick

Rectangle {
    id: view

    required property QtObject model

    readonly property real buttonHeight: Math.max(32, Math.round(20 * Theme.textScale) + 12)
    // Known at once, unlike the width of a row, and the window takes its size from it.
    readonly property real buttonsWidth: {
        let sum = -8;
        for (let i = 0; i < repeater.count; ++i) sum += (repeater.itemAt(i)?.width ?? 0) + 8;
        return sum;
    }

    implicitWidth: Math.max(Math.min(560, Theme.scaled(380)), Math.min(720, buttonsWidth + 40))
    implicitHeight: body.contentHeight + buttonHeight + 60
    color: Theme.plainBg
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: model.message
    Accessible.description: model.informativeText

    function focusFirst() {
        const first = repeater.itemAt(model.firstFocus);
        if (first) first.forceActiveFocus(Qt.TabFocusReason);
    }
    Component.onCompleted: focusFirst()
    // The window comes up by itself and takes the keyboard: which button Return would press must be seen.
    Window.onActiveChanged: {
        const item = Window.activeFocusItem;
        if (Window.active && item && item.focusReason !== undefined) item.focusReason = Qt.TabFocusReason;
    }
    Connections {
        target: view.model
        function onChanged() { view.focusFirst(); }
    }
    Keys.onEscapePressed: model.chooseLast()

    Image {
        id: icon
        anchors.left: parent.left
        anchors.leftMargin: 20
        y: 20
        width: 48
        height: 48
        source: "qrc:/pintle/icons/app.svg"
        sourceSize: Qt.size(96, 96)
        Accessible.ignored: true
    }
    Rectangle {
        anchors.right: icon.right
        anchors.rightMargin: -6
        anchors.bottom: icon.bottom
        anchors.bottomMargin: -6
        width: 26
        height: 26
        radius: 13
        visible: view.model.warning
        color: view.color
        Icon {
            anchors.centerIn: parent
            glyph: "warning"
            size: 20
            color: Theme.danger
        }
    }
    Flickable {
        id: body
        anchors.left: icon.right
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 20
        y: 20
        height: view.height - view.buttonHeight - 60
        contentHeight: Math.max(48, details.visible ? details.y + details.height : message.height)
        boundsBehavior: Flickable.StopAtBounds
        clip: contentHeight > height
        Item {
            width: parent.width
            height: body.contentHeight
            Text {
                id: message
                width: parent.width
                text: view.model.message
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Math.round(15 * Theme.textScale)
                font.weight: Font.DemiBold
                color: Theme.text
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                id: details
                y: message.height + 6
                width: parent.width
                visible: text !== ""
                text: view.model.informativeText
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                lineHeight: 1.15
                font.family: Theme.family
                font.pixelSize: Theme.sizeBody
                color: Theme.text2
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
        spacing: 8
        // The first one stands at the end of the line, where the eye comes to last.
        layoutDirection: Qt.RightToLeft
        Repeater {
            id: repeater
            model: view.model.buttons
            delegate: PushButton {
                required property string modelData
                required property int index
                text: modelData
                width: Math.max(88, implicitWidth)
                height: view.buttonHeight
                danger: view.model.destructive && index === 0
                prominent: index === 0 && !view.model.destructive
                onClicked: view.model.choose(index)
            }
        }
    }
}
