// The content of a window as a page that scrolls where the window is lower than it, keeps the item with the
// keyboard in sight, and follows the direction of reading.
import QtQuick
import QtQuick.Templates as T

Rectangle {
    id: page

    /// Free above the content, for windows whose title lies over it.
    property real titleStrip: 0
    property real margin: 20
    property real topMargin: 16
    property real bottomMargin: 20
    /// Only what can be seen appears.
    readonly property bool onScreen: Window.window !== null && Window.window.visible
    default property alias content: column.data
    property alias spacing: column.spacing

    color: Theme.windowBg
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    function bringIntoView(item: Item) {
        let ancestor = item;
        while (ancestor && ancestor !== column) ancestor = ancestor.parent;
        if (!ancestor) return;
        let top = item.mapToItem(flickable.contentItem, 0, 0).y - 12;
        const bottom = top + item.height + 24;
        // With the title of its section, where both have room.
        let section = item;
        while (section.parent !== column) section = section.parent;
        const titleTop = section.mapToItem(flickable.contentItem, 0, 0).y - 4;
        if (bottom - titleTop <= flickable.height) top = Math.min(top, titleTop);
        const last = Math.max(0, flickable.contentHeight - flickable.height);
        if (top < flickable.contentY) flickable.contentY = Math.max(0, top);
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = Math.min(last, bottom - flickable.height);
    }
    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged() {
            page.keepFocusInView();
        }
    }
    function keepFocusInView() {
        const item = page.Window.activeFocusItem;
        // To what was pressed the pointer has found its way already.
        if (item && item.visualFocus !== false) page.bringIntoView(item);
    }

    Flickable {
        id: flickable
        anchors.fill: parent
        anchors.topMargin: page.titleStrip
        contentWidth: width
        contentHeight: column.height + page.topMargin + page.bottomMargin
        // A field that has the keyboard may still grow.
        onContentHeightChanged: page.keepFocusInView()
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.VerticalFlick
        pixelAligned: true
        // At its end a turn of the wheel counts as motion for long in Qt 6.8, and motion takes the next press.
        onAtYBeginningChanged: if (atYBeginning && moving && !dragging) cancelFlick()
        onAtYEndChanged: if (atYEnd && moving && !dragging) cancelFlick()
        clip: true
        T.ScrollBar.vertical: Scroller { }

        Column {
            id: column
            x: page.margin
            y: page.topMargin
            width: flickable.width - 2 * page.margin
        }
    }
    Rectangle {
        anchors.bottom: flickable.top
        width: parent.width
        height: 1
        color: Theme.hairline
        visible: page.titleStrip > 0 && flickable.contentY > 0
    }
}
