// One line of text to fill in.
import QtQuick
import QtQuick.Templates as T

T.TextField {
    id: field

    property string placeholder

    implicitHeight: Math.max(32, contentHeight + 12)
    leftPadding: 10
    rightPadding: 10
    verticalAlignment: TextInput.AlignVCenter
    font.family: Theme.family
    font.pixelSize: Theme.sizeBody
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.plainBg
    selectByMouse: true
    hoverEnabled: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholder
    Accessible.onPressAction: if (enabled) accepted()

    Text {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        textFormat: Text.PlainText
        text: field.placeholder
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
        font: field.font
        color: Theme.text2
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.radiusInner
        color: Theme.well
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.accent : Theme.outline
    }
}
