// The popover: header, filter, list and footer on a panel that fills the window but for its shadow. Where room
// is short or text is large, update, notice and filter scroll with the list.
import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Pintle.Shell

FocusScope {
    id: root

    required property var popover
    /// Around the panel, for as much of its shadow as there is room for; 0 where the panel fills the window.
    property var shadow: ({ left: 0, top: 0, right: 0, bottom: 0 })
    readonly property bool shadowed: shadow.left + shadow.top + shadow.right + shadow.bottom > 0
    /// At large text the list keeps two rows below the filter in a panel of the usual height.
    readonly property bool headScrolls: panel.height < (Theme.large ? 480 : 360)

    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onEscapePressed: Window.window.close()
    Keys.onPressed: event => event.accepted = root.popover.pressShortcut(event.key, event.modifiers)

    /// The view is about to be seen: from its start, with the active theme in view. No row is marked until a
    /// key asks for it.
    function willShow(animates: bool): void {
        root.popover.finder.clear();
        const active = root.popover.rows.activeRow;
        list.unmark();
        list.entry = Math.max(0, active);
        list.forceActiveFocus(Qt.OtherFocusReason);
        if (active > 0) list.positionViewAtIndex(active, ListView.Contain);
        else list.positionViewAtBeginning();
        if (animates && Theme.motion && Appearance.blendsWindows && !Theme.hosted) entrance.restart();
    }

    function digits(colour): string {
        const two = part => Math.round(part * 255).toString(16).padStart(2, "0");
        return two(colour.a) + two(colour.r) + two(colour.g) + two(colour.b);
    }

    ParallelAnimation {
        id: entrance
        NumberAnimation { target: panel; property: "opacity"; from: 0; to: 1; duration: Theme.quick; easing.type: Easing.OutQuad }
        NumberAnimation { target: rise; property: "y"; from: -6; to: 0; duration: Theme.slide; easing.type: Easing.OutCubic }
    }

    BorderImage {
        x: panel.x - Theme.shadowMargin
        y: panel.y - Theme.shadowMargin
        width: panel.width + 2 * Theme.shadowMargin
        height: panel.height + 2 * Theme.shadowMargin
        visible: root.shadowed
        opacity: panel.opacity
        source: root.shadowed ? "image://shadow/" + (Theme.dark ? "dark" : "light") : ""
        border.left: 40
        border.right: 40
        border.top: 40
        border.bottom: 40
        Accessible.ignored: true
    }

    // Read out when it comes, where the toolkit has no announcements of its own.
    Item {
        objectName: "announcement"
        width: 1
        height: 1
        visible: Accessible.name !== "" && !root.popover.announcesItself
        Accessible.role: Accessible.Notification
        Accessible.name: root.popover.announcement
    }

    Rectangle {
        id: panel
        x: root.shadow.left
        y: root.shadow.top
        width: root.width - root.shadow.left - root.shadow.right
        height: root.height - root.shadow.top - root.shadow.bottom
        objectName: "panel"
        radius: Theme.hosted ? 0 : Theme.radius
        color: Theme.bg
        transform: Translate { id: rise }

        PopoverHeader {
            id: header
            width: parent.width
            popover: root.popover
            showsUpdate: !root.headScrolls && !Theme.large
        }
        Loader {
            id: fixedHead
            anchors.top: header.bottom
            width: parent.width
            active: !root.headScrolls
            sourceComponent: head
        }

        Component {
            id: head
            Item {
                width: panel.width
                implicitHeight: headColumn.implicitHeight + 8
                Column {
                    id: headColumn
                    x: 12
                    width: parent.width - 24
                    spacing: 8
                    UpdateButton {
                        width: parent.width
                        wide: true
                        visible: !header.showsUpdate && text !== ""
                        text: root.popover.update
                        iconName: root.popover.updateIcon
                        onClicked: root.popover.openDownloadPage()
                    }
                    Notice {
                        width: parent.width
                        visible: text !== ""
                        text: root.popover.unavailable
                    }
                    SegmentedBar {
                        width: parent.width
                        columns: Theme.large ? 2 : entries.length
                        entries: root.popover.filters
                        current: root.popover.filter
                        Accessible.name: root.popover.filterName
                        onChosen: index => {
                            root.popover.selectFilter(index);
                            list.showFromStart();
                        }
                    }
                    NetworkLine {
                        width: parent.width
                        visible: text !== ""
                        text: root.popover.networkLine
                        retry: root.popover.retry
                        onRetried: root.popover.retryDownloads()
                    }
                }
            }
        }

        ListView {
            id: list
            objectName: "themeList"

            /// The row that the first arrow marks, and that Tab comes to, while none is marked.
            property int entry: 0
            /// The row that shows the keyboard's mark; -1 for none.
            readonly property int marked: currentItem && currentItem.visualFocus ? currentIndex : -1

            anchors.top: fixedHead.active ? fixedHead.bottom : header.bottom
            anchors.bottom: footer.top
            anchors.left: parent.left
            anchors.right: parent.right
            clip: true
            activeFocusOnTab: true
            cacheBuffer: 104
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            highlightMoveDuration: 0
            model: root.popover.rows
            header: root.headScrolls ? head : null
            Accessible.role: Accessible.List
            Accessible.name: root.popover.listName

            onActiveFocusChanged: {
                if (activeFocus) {
                    if (currentIndex >= 0 && marked < 0 && currentItem.activeFocus) unmark();
                    return;
                }
                root.popover.finder.clear();
                // So that Tab finds a row that it can mark.
                if (currentIndex < 0 && count > 0) currentIndex = Math.min(entry, count - 1);
            }

            function showFromStart(): void {
                entry = 0;
                if (activeFocus) unmark();
                else currentIndex = count > 0 ? 0 : -1;
                positionViewAtBeginning();
                if (Theme.motion) fade.restart();
            }
            function unmark(): void {
                if (currentIndex >= 0) entry = currentIndex;
                if (currentItem) currentItem.focus = false;
                currentIndex = -1;
            }
            function go(to: int): void {
                root.popover.finder.clear();
                mark(to, ListView.Contain);
            }
            /// Marks a row and brings it into sight.
            function mark(to: int, mode: int): void {
                if (to < 0 || to >= count) return;
                currentIndex = to;
                if (to === 0) positionViewAtBeginning();
                else positionViewAtIndex(to, mode);
                currentItem.forceActiveFocus(Qt.TabFocusReason);
                // It may have had the keyboard already, unseen.
                currentItem.focusReason = Qt.TabFocusReason;
            }
            function inSight(item: Item): bool {
                return item !== null && item.y + item.height > contentY && item.y < contentY + height;
            }
            readonly property int page: Math.max(1, Math.floor(height / (currentItem ? currentItem.height : 52)) - 1)

            Keys.forwardTo: [chip]
            Keys.onPressed: event => {
                if (marked >= 0 && event.matches(StandardKey.Copy)) {
                    event.accepted = true;
                    root.popover.copyError(currentItem.themeId);
                    return;
                }
                const answer = root.popover.keyInList(event.key, marked, entry, count, page, inSight(currentItem));
                if (!answer.known) return;
                event.accepted = true;
                if (answer.marked >= 0) go(answer.marked);
                if (answer.taps) root.popover.tap(currentItem.themeId);
                else if (answer.removes) root.popover.deleteTheme(currentItem.themeId);
            }

            NumberAnimation {
                id: fade
                target: list.contentItem
                property: "opacity"
                from: 0
                to: 1
                duration: Theme.slide
                easing.type: Theme.fadeCurve
            }

            delegate: ThemeRow {
                id: listed
                x: 8
                width: ListView.view.width - 16
                popover: root.popover
                // What a key does to a row is the list's to say, before the control takes any for itself.
                Keys.forwardTo: [chip, list]
                onTapped: {
                    root.popover.finder.clear();
                    list.entry = index;
                    root.popover.tap(themeId);
                }
                Component.onCompleted: root.popover.putInOrder(listed)
                // By an assistive program: marked and brought into sight as by a key.
                onActiveFocusChanged: if (activeFocus && list.currentIndex !== index) list.mark(index, ListView.Contain)
                onDeleteAsked: root.popover.deleteTheme(themeId)
                onPressed: {
                    root.popover.finder.clear();
                    list.unmark();
                }
            }

            T.ScrollBar.vertical: Scroller {}
        }

        PopoverFooter {
            id: footer
            anchors.bottom: parent.bottom
            width: parent.width
            popover: root.popover
        }

        FindChip {
            id: chip
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: footer.top
            anchors.bottomMargin: -Math.round(height / 3)
            width: Math.min(implicitWidth, parent.width - 32)
            finder: root.popover.finder
            onFound: row => {
                list.mark(row, ListView.Center);
            }
        }

        // The edge lies over everything, so that a row that is cut off never paints over it.
        Rectangle {
            anchors.fill: parent
            visible: !Theme.hosted && Appearance.blendsWindows
            radius: Theme.radius
            color: "transparent"
            border.width: 1
            border.color: Theme.outline
        }
        // Where nothing blends the corners are cut in steps.
        BorderImage {
            anchors.fill: parent
            visible: !Theme.hosted && !Appearance.blendsWindows
            source: visible ? "image://edge/" + root.digits(Theme.outline) : ""
            border.left: Theme.radius + 2
            border.right: Theme.radius + 2
            border.top: Theme.radius + 2
            border.bottom: Theme.radius + 2
            smooth: false
            Accessible.ignored: true
        }
    }
}
