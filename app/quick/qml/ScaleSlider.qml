// A slider with a groove of 4 and a knob of 16; `notch` marks one value on the groove when it lies in the range.
// It shows what its owner has and asks for another value with slid(): by mouse, keyboard, or an assistive program,
// which sets the value itself.
import QtQuick
import QtQuick.Templates as T

T.Slider {
    id: slider

    required property real shown
    property real notch: NaN
    // Where assistive technology looks for the range.
    readonly property real minimumValue: from
    readonly property real maximumValue: to
    readonly property real knobSize: pressed ? 18 : 16
    property bool made: false

    signal slid(real to)

    // Not a property: it would be behind while `shown` changes.
    function inRange(): real { return Math.max(from, Math.min(to, shown)); }

    implicitHeight: 28
    implicitWidth: 120
    leftPadding: 0
    rightPadding: 0
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45
    snapMode: T.Slider.SnapAlways
    live: true
    wheelEnabled: true
    Keys.onUpPressed: increase()
    Keys.onDownPressed: decrease()
    value: shown
    onShownChanged: value = shown
    // A value outside of the range is drawn at its end and not written back.
    Component.onCompleted: made = true
    onValueChanged: {
        if (!made || Math.abs(value - inRange()) < 1e-6) return;
        if (enabled) slid(value);
        // What the owner made of it: assistive programs give values between the steps, and while it is disabled.
        value = inRange();
    }

    background: Item {
        Rectangle {
            id: groove
            width: parent.width
            height: 4
            radius: 2
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.outline
        }
        Rectangle {
            readonly property real part: (slider.notch - slider.from) / (slider.to - slider.from)
            visible: part > 0 && part < 1
            width: 2
            height: 10
            radius: 1
            anchors.verticalCenter: parent.verticalCenter
            x: 8 + (slider.mirrored ? 1 - part : part) * (parent.width - 16) - 1
            color: Theme.iconRest
        }
        Rectangle {
            readonly property real reach: 8 + slider.position * (parent.width - 16)
            height: 4
            radius: 2
            width: reach
            x: slider.mirrored ? parent.width - reach : 0
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.accent
        }
    }
    handle: Rectangle {
        x: 8 + slider.visualPosition * (slider.availableWidth - 16) - width / 2
        y: (slider.availableHeight - height) / 2
        width: slider.knobSize
        height: width
        radius: width / 2
        color: Theme.knob
        border.width: slider.pressed || slider.hovered ? 2 : (Theme.dark ? 0 : 1)
        border.color: slider.pressed || slider.hovered ? Theme.accent : Theme.outline
        Behavior on width { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        FocusRing {
            outside: true
            corner: parent.radius
            shown: slider.visualFocus
        }
    }
}
