// One of the drawings of app/quick/icons, tinted. `glyph` is the file's name without its suffix; `symbol` is the
// name of a symbol as the models give it and is looked up when there is no `glyph`.
import QtQuick
import QtQuick.Controls.impl
import Pintle.Shell

IconImage {
    id: icon

    property string glyph
    property string symbol
    property real size: 20
    /// True for the few drawings that show a direction of reading.
    readonly property bool followsReading: file === "login" || file === "restore"
    readonly property string file: glyph !== "" ? glyph : (symbol !== "" ? Appearance.iconOf(symbol) : "")

    width: size
    height: size
    source: file === "" ? "" : "qrc:/pintle/icons/" + file + ".svg"
    sourceSize: Qt.size(size, size)
    mirror: followsReading && Qt.application.layoutDirection === Qt.RightToLeft
    color: Theme.text2
    Accessible.ignored: true

    Behavior on color { ColorAnimation { duration: Theme.quick; easing.type: Easing.OutQuad } }
}
