// Every control in its states, for a look at the tokens.
import QtQuick
import QtQuick.Window
import Pintle

Window {
    width: 640
    height: 420
    color: Theme.bg
    flags: Qt.FramelessWindowHint

    Grid {
        x: 24
        y: 24
        columns: 4
        spacing: 20
        verticalItemAlignment: Grid.AlignVCenter
        IconButton { iconName: "settings"; text: "Settings" }
        IconButton { iconName: "about"; text: "About" }
        IconButton { iconName: "power"; text: "Quit" }
        IconButton { iconName: "trash"; text: "Delete"; danger: true; glyphSize: 18 }
        PushButton { text: "System Default" }
        PushButton { text: "Reset"; width: 120 }
        PushButton { text: "Reset Application"; danger: true; iconName: "trash" }
        PushButton { text: "Cancel"; enabled: false }
        ToggleSwitch { checked: true }
        ToggleSwitch { checked: false }
        ToggleSwitch { checked: true; focusShown: true }
        Spinner { }
        ScaleSlider { from: 0.75; to: 1.5; shown: 1.15; stepSize: 0.05; notch: 1 }
        ScaleSlider { from: 0.75; to: 1; shown: 0.8; stepSize: 0.05; notch: 1 }
        ProgressStripe { width: 120; value: 0.4 }
        ProgressStripe { width: 120; indeterminate: true }
    }
    SegmentedBar {
        x: 24
        y: 250
        width: 316
        current: 1
        entries: [{ title: "All", icon: "people" }, { title: "Universal", icon: "hand-both" },
                  { title: "Right", icon: "hand-right" }, { title: "Left", icon: "hand-left" }]
        onChosen: index => current = index
    }
    SegmentedBar {
        x: 24
        y: 300
        width: 316
        columns: 2
        current: 0
        entries: [{ title: "All", icon: "people" }, { title: "Universal", icon: "hand-both" },
                  { title: "Right", icon: "hand-right" }, { title: "Left", icon: "hand-left" }]
        onChosen: index => current = index
    }
    Row {
        x: 24
        y: 370
        spacing: 8
        Repeater {
            model: ["pointer-motion", "update", "people", "scale", "check-disc", "circle", "download", "warning",
                    "animated", "login", "relaunch", "restore", "windows", "pointer-rays", "broadcast", "layers"]
            Icon { required property string modelData; glyph: modelData; color: Theme.text }
        }
    }
}
