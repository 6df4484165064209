// A thin bar that fills from the side where reading starts. `indeterminate` moves a piece along the groove.
import QtQuick

Item {
    id: stripe

    property real value: 0
    property bool indeterminate: false
    /// The accessible name, in the words of what is under way.
    property string name
    // Where assistive technology looks for the range.
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1
    readonly property bool backwards: Qt.application.layoutDirection === Qt.RightToLeft

    implicitHeight: 3

    Accessible.role: Accessible.ProgressBar
    Accessible.name: name
    Accessible.description: indeterminate ? "" : Math.round(value * 100) + "%"

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.outline
    }
    Rectangle {
        id: fill
        visible: !stripe.indeterminate
        height: parent.height
        radius: height / 2
        width: Math.max(0, Math.min(1, stripe.value)) * parent.width
        x: stripe.backwards ? parent.width - width : 0
        color: Theme.accent
        Behavior on width { NumberAnimation { duration: Theme.step } }
    }
    Rectangle {
        property real phase: 0
        visible: stripe.indeterminate
        height: parent.height
        radius: height / 2
        width: Theme.motion ? parent.width * 0.3 : parent.width
        x: Theme.motion ? (stripe.backwards ? 1 - phase : phase) * (parent.width - width) : 0
        color: Theme.accent
        SequentialAnimation on phase {
            running: stripe.indeterminate && stripe.visible && Theme.motion
            loops: Animation.Infinite
            NumberAnimation { from: 0; to: 1; duration: 1200; easing.type: Easing.InOutSine }
            NumberAnimation { from: 1; to: 0; duration: 1200; easing.type: Easing.InOutSine }
        }
    }
}
