// One theme in the popover's list: tile, name and marks, texts, progress, and the mark of the active one. Two
// layouts: one line of texts at the usual text sizes, texts under each other at large ones.
import QtQuick
import QtQuick.Window
import QtQuick.Templates as T

T.ItemDelegate {
    id: row

    required property int index
    required property string themeId
    required property string name
    required property int weight
    required property string author
    required property string license
    required property string handIcon
    required property string handHelp
    required property string tile
    required property string tileIcon
    required property string tileTone
    required property string drawing
    required property string monogram
    required property int tint
    required property string preview
    required property string status
    required property string statusTone
    required property string progress
    required property real progressValue
    required property bool active
    required property string mark
    required property bool animated
    required property bool canDelete
    required property string error
    required property string errorSentence
    required property bool isNew
    required property bool acceptsTap
    required property string description

    required property var popover

    readonly property bool large: Theme.large
    readonly property bool pointed: pointer.hovered
    readonly property bool focusShown: visualFocus
    readonly property bool hasStatus: status !== ""
    readonly property bool offersDelete: canDelete && (pointed || focusShown || remove.activeFocus)
    /// On line 2 the delete button takes the place of an error's text.
    readonly property bool statusShown: hasStatus && !(offersDelete && error !== "")
    readonly property bool attended: pointed || focusShown
    /// The theme that is attended; empty for none.
    readonly property string attendedId: attended ? themeId : ""
    property string lastAttended
    onAttendedIdChanged: {
        if (lastAttended !== "") popover.strips.leave(lastAttended);
        lastAttended = attendedId;
        if (attendedId !== "") popover.strips.attend(attendedId);
    }
    Component.onDestruction: if (lastAttended !== "") popover.strips.leave(lastAttended)
    readonly property bool showsStrip: popover.strips.themeId === themeId
    readonly property bool tileShowsAction: tile === "download" && tileTone !== "quiet"
    /// Whether the theme's own drawing or letters fill the tile.
    readonly property bool drawn: (tile === "download" && !tileShowsAction || tile === "pending") && drawing !== ""
    readonly property bool lettered: tile === "download" && !tileShowsAction && monogram !== ""

    signal tapped()
    signal deleteAsked()

    implicitHeight: large ? Math.max(52, stack.implicitHeight + 20) : 52
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    padding: 0
    text: name

    // The control reports its own role and state to assistive technology; a click must not change the latter.
    checkable: true
    checked: active
    onToggled: checked = Qt.binding(() => row.active)
    Accessible.checkable: true
    Accessible.checked: active
    Accessible.name: name
    Accessible.description: description
    Accessible.focusable: true
    Accessible.onPressAction: row.tapped()
    Accessible.onToggleAction: row.tapped()

    onClicked: tapped()

    function ink(tone: string): color {
        return tone === "danger" ? Theme.dangerInk : (tone === "accent" ? Theme.accentInk : Theme.text2);
    }

    HoverHandler { id: pointer }

    background: Rectangle {
        radius: Theme.radiusInner
        color: row.active ? Theme.accentSoft : "transparent"
        Behavior on color { ColorAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        Tint {
            radius: Theme.radiusInner
            hovered: row.pointed
            pressed: row.down && row.acceptsTap
        }
        FocusRing { shown: row.focusShown }
    }

    contentItem: Item {
        // The tile.
        Item {
            id: tileBox
            anchors.left: parent.left
            anchors.leftMargin: 8
            y: row.large ? 10 : 8
            width: 36
            height: 36

            Rectangle {
                anchors.fill: parent
                radius: Theme.radiusInner
                visible: row.tile === "preview" || row.tile === "pending"
                gradient: Gradient {
                    GradientStop { position: 0; color: Theme.tileTop }
                    GradientStop { position: 1; color: Theme.tileBottom }
                }
            }
            Rectangle {
                anchors.fill: parent
                radius: Theme.radiusInner
                visible: row.tile === "download" || row.tile === "warning"
                color: row.tile === "warning" ? Theme.dangerSoft
                     : row.tileShowsAction ? Theme.accentSoft
                     : row.attended ? Theme.accentSoft
                     : row.monogram === "" ? Theme.well : Theme.tintPlates[row.tint]
                Behavior on color { ColorAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
            }
            Text {
                anchors.centerIn: parent
                textFormat: Text.PlainText
                text: row.monogram
                visible: opacity > 0
                opacity: row.lettered ? 1 : 0
                font.family: Theme.family
                font.pixelSize: 13
                font.weight: Font.DemiBold
                font.letterSpacing: 0.3
                color: Theme.tintInks[row.tint]
                Accessible.ignored: true
                Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
            }
            Icon {
                anchors.centerIn: parent
                glyph: row.tileIcon
                size: 20
                opacity: row.tile === "preview" || row.drawn || row.lettered ? 0 : 1
                visible: opacity > 0
                color: row.tile === "warning" ? Theme.danger
                     : row.tileShowsAction ? Theme.accent : Theme.iconRest
                Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
            }
            Image {
                anchors.centerIn: parent
                visible: row.drawn
                source: row.drawing
                sourceSize: Qt.size(26, 26)
                smooth: false
                Accessible.ignored: true
            }
            Image {
                x: Math.round((parent.width - width) / 2)
                y: Math.round((parent.height - height) / 2)
                visible: row.tile === "preview"
                source: row.preview
                sourceSize: Qt.size(24, 24)
                asynchronous: true
                smooth: false
                opacity: status === Image.Ready ? 1 : 0
                Accessible.ignored: true
            }
        }

        // The mark at the end.
        Item {
            id: markBox
            readonly property real size: Theme.glyph(18)
            anchors.right: parent.right
            anchors.rightMargin: 8
            y: row.large ? 10 + Math.max(0, (nameLine.lineHeightNow - size) / 2) : (parent.height - height) / 2
            width: size
            height: size

            Icon {
                anchors.centerIn: parent
                glyph: "circle"
                size: markBox.size
                color: row.pointed ? Theme.text2 : Theme.iconRest
                opacity: row.mark === "circle" ? 1 : 0
                visible: opacity > 0
                Behavior on opacity { NumberAnimation { duration: Theme.swap } }
            }
            Icon {
                anchors.centerIn: parent
                glyph: "check-disc"
                size: markBox.size
                color: Theme.accent
                opacity: row.mark === "check" ? 1 : 0
                scale: row.mark === "check" || !Theme.motion ? 1 : 0.8
                visible: opacity > 0
                Behavior on opacity { NumberAnimation { duration: Theme.swap } }
                Behavior on scale {
                    NumberAnimation { duration: Theme.swap; easing.type: Easing.OutBack; easing.overshoot: 1.2 }
                }
            }
            Spinner {
                anchors.centerIn: parent
                size: markBox.size
                visible: row.mark === "spinner"
            }
        }

        // Names, texts and marks between them.
        Item {
            id: column
            anchors.left: tileBox.right
            anchors.leftMargin: 12
            anchors.right: markBox.left
            anchors.rightMargin: row.large ? 12 : 8
            height: parent.height
            readonly property real markWidth: row.animated ? Theme.glyph(14) + 6 : 0
            readonly property real newWidth: row.isNew ? newMark.width + 6 : 0
            readonly property real handWidth: row.handIcon !== "" ? Theme.glyph(14) + 5 : 0
            /// What the delete button keeps free on both lines, whether it is shown or not.
            readonly property real kept: row.canDelete && !row.statusShown && !row.large ? 32 : 0
            readonly property real licenseWidth: row.hasStatus && row.license !== "" && !row.large && kept === 0
                ? licenseText.implicitWidth + 8 : 0

            Item {
                id: stack
                width: parent.width
                implicitHeight: row.large ? nameLine.height + 2 + second.height + (bar.shown ? 10 : 0)
                                          : nameLine.height + 2 + second.height
                height: implicitHeight
                y: row.large ? 10 : Math.round((parent.height - implicitHeight) / 2)

                Text {
                    id: nameLine
                    readonly property real lineHeightNow: lineCount > 0 ? contentHeight / lineCount : implicitHeight
                    readonly property real room: column.width - column.markWidth - column.newWidth - column.licenseWidth - column.kept
                    anchors.left: parent.left
                    width: Math.min(implicitWidth + 1, room)
                    text: row.name
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: row.large ? Text.Wrap : Text.NoWrap
                    maximumLineCount: row.large ? 2 : 1
                    elide: row.large ? Text.ElideRight : Text.ElideMiddle
                    font.family: Theme.family
                    font.pixelSize: Theme.sizeBody
                    font.weight: row.weight
                    color: Theme.text
                    Accessible.ignored: true
                }
                Icon {
                    id: animatedMark
                    visible: row.animated
                    anchors.left: nameLine.left
                    anchors.leftMargin: nameLine.contentWidth + 6
                    y: Math.round((nameLine.lineHeightNow - height) / 2)
                    glyph: "animated"
                    size: Theme.glyph(14)
                    HoverHandler { id: animatedHover }
                    Tip {
                        text: row.popover.animatedHelp
                        visible: animatedHover.hovered
                    }
                }
                Rectangle {
                    id: newMark
                    visible: row.isNew
                    anchors.left: nameLine.left
                    anchors.leftMargin: nameLine.contentWidth + 6 + column.markWidth
                    y: Math.round((nameLine.lineHeightNow - height) / 2)
                    width: newText.implicitWidth + 10
                    height: newText.implicitHeight + 2
                    radius: height / 2
                    color: Theme.accentSoft
                    Text {
                        id: newText
                        anchors.centerIn: parent
                        textFormat: Text.PlainText
                        text: row.popover.newMark
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeCaption
                        font.weight: Font.Medium
                        color: Theme.accentInk
                        Accessible.ignored: true
                    }
                }
                Text {
                    id: licenseText
                    anchors.right: parent.right
                    anchors.baseline: nameLine.baseline
                    visible: opacity > 0
                    opacity: column.licenseWidth > 0 ? 1 : 0
                    text: row.license
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignRight
                    font.family: Theme.family
                    font.pixelSize: Theme.sizeCaption
                    color: Theme.text2
                    Accessible.ignored: true
                }

                Item {
                    id: second
                    readonly property real statusRoom: row.statusShown ? statusText.implicitWidth + statusGlyph.room : 0
                    y: nameLine.height + 2
                    opacity: row.showsStrip ? 0 : 1
                    Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
                    width: parent.width
                    height: Math.max(authorText.visible ? authorText.height : 0, statusText.height)

                    Text {
                        id: authorText
                        readonly property bool withLicense: !row.hasStatus && row.license !== ""
                        readonly property real handAtStart: row.large ? column.handWidth : 0
                        anchors.left: parent.left
                        anchors.leftMargin: handAtStart
                        width: Math.max(0, Math.min(implicitWidth + 1, parent.width - column.kept - column.handWidth
                            - (withLicense && !row.large ? dot.room + secondLicense.implicitWidth : 0)
                            - (row.statusShown && !row.large ? second.statusRoom + 12 : 0)))
                        visible: !row.large || !row.statusShown
                        text: row.large && withLicense ? row.author + " \u00B7 " + row.license : row.author
                        textFormat: Text.PlainText
                        horizontalAlignment: Text.AlignLeft
                        wrapMode: row.large ? Text.Wrap : Text.NoWrap
                        maximumLineCount: row.large ? 2 : 1
                        elide: Text.ElideRight
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeCaption
                        color: Theme.text2
                        Accessible.ignored: true
                    }
                    Text {
                        id: dot
                        readonly property real room: row.author !== "" ? implicitWidth + 8 : 0
                        readonly property bool shown: authorText.withLicense && !row.large
                        anchors.left: authorText.left
                        anchors.leftMargin: authorText.contentWidth + 4
                        visible: opacity > 0
                        opacity: shown && row.author !== "" ? 1 : 0
                        textFormat: Text.PlainText
                        text: "\u00B7"
                        font: authorText.font
                        color: Theme.text2
                        Accessible.ignored: true
                    }
                    Text {
                        id: secondLicense
                        anchors.left: authorText.left
                        anchors.leftMargin: authorText.contentWidth + dot.room
                        visible: opacity > 0
                        opacity: dot.shown ? 1 : 0
                        text: row.license
                        textFormat: Text.PlainText
                        font: authorText.font
                        color: Theme.text2
                        Accessible.ignored: true
                    }
                    Icon {
                        visible: row.handIcon !== "" && authorText.visible
                        anchors.left: authorText.left
                        anchors.leftMargin: row.large ? -column.handWidth : 5 + authorText.contentWidth
                            + (dot.shown ? dot.room + secondLicense.implicitWidth : 0)
                        y: Math.round((authorText.height / Math.max(1, authorText.lineCount) - height) / 2)
                        glyph: row.handIcon
                        size: Theme.glyph(14)
                        HoverHandler { id: handHover }
                        Tip {
                            text: row.handHelp
                            visible: handHover.hovered
                        }
                    }
                    Icon {
                        id: statusGlyph
                        readonly property real room: visible ? width + 3 : 0
                        visible: row.statusShown && row.tile === "download" && row.tileTone === "quiet"
                        anchors.right: row.large ? undefined : statusText.left
                        anchors.rightMargin: 3
                        anchors.left: row.large ? parent.left : undefined
                        anchors.verticalCenter: statusText.verticalCenter
                        glyph: row.tileIcon
                        size: Theme.glyph(12)
                        color: row.attended ? Theme.accent : Theme.iconRest
                    }
                    Text {
                        id: statusText
                        anchors.right: row.large ? undefined : parent.right
                        anchors.left: row.large ? parent.left : undefined
                        anchors.leftMargin: statusGlyph.room
                        width: row.large ? Math.min(implicitWidth + 1, parent.width - statusGlyph.room) : implicitWidth
                        visible: opacity > 0
                        opacity: row.statusShown ? 1 : 0
                        text: row.status
                        textFormat: Text.PlainText
                        elide: Text.ElideRight
                        horizontalAlignment: row.large ? Text.AlignLeft : Text.AlignRight
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeCaption
                        font.weight: row.statusTone === "quiet" ? Font.Normal : Font.Medium
                        color: row.statusTone === "quiet" && row.attended ? Theme.accentInk : row.ink(row.statusTone)
                        Accessible.ignored: true
                    }
                }
            }
            ThemeStrip {
                anchors.left: parent.left
                y: Math.round(stack.y + second.y + (second.height - height) / 2)
                visible: row.showsStrip
                // Six cursors and the gaps between them, clear of the delete button.
                side: Math.min(Theme.glyph(18), Math.floor((parent.width - Math.max(column.kept, 36)) / 8.5))
                cursors: row.showsStrip ? row.popover.strips.cursors : []
                seen: row.ListView.view !== null && row.ListView.view.inSight(row) && row.Window.visibility !== Window.Hidden
            }
            ProgressStripe {
                id: bar
                readonly property bool shown: row.progress !== "none"
                anchors.left: parent.left
                anchors.right: parent.right
                y: parent.height - 6
                visible: shown
                name: row.name
                indeterminate: row.progress === "indeterminate"
                value: row.progressValue
            }
        }

        IconButton {
            id: remove
            anchors.right: markBox.left
            anchors.rightMargin: 8
            y: row.large ? parent.height - height - 8 : (parent.height - height) / 2
            visible: opacity > 0
            opacity: row.offersDelete ? 1 : 0
            enabled: row.canDelete
            focusPolicy: row.offersDelete ? Qt.TabFocus : Qt.NoFocus
            iconName: "trash"
            glyphSize: 18
            danger: true
            text: row.popover.deleteHelp
            onClicked: row.deleteAsked()
            // The blank that a search would take presses this.
            onActiveFocusChanged: if (activeFocus) row.popover.finder.clear()
            Behavior on opacity { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
        }
    }

    Tip {
        text: row.errorSentence !== "" ? row.errorSentence + "\n" + row.error : row.error
        visible: row.error !== "" && (row.pointed || row.focusShown) && !remove.hovered
    }
}
