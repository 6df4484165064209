// The design tokens: colours, type, lengths and motion. Every view takes its values from here; lengths are at
// 100 % text size, and those that hold text grow with `textScale`.
pragma Singleton
import QtQuick
import Pintle.Shell

QtObject {
    id: theme

    readonly property bool dark: Appearance.dark
    /// Whether the backgrounds are seen through: the glass look on a desktop that composes windows.
    readonly property bool glass: Appearance.glass
    readonly property real glassOpacity: Math.min(1, Math.max(0.75, Appearance.glassOpacity))

    readonly property color plainBg: dark ? "#1B1E1F" : "#F7F8F8"
    /// Whether the desktop draws the edges of panels and windows and lays a blurred material behind them.
    readonly property bool hosted: Appearance.nativelyHosted
    readonly property color bg: !glass ? plainBg : hosted ? "transparent" : alpha(plainBg, glassOpacity)
    /// Windows stand on the material whatever the look, panels in the glass look.
    readonly property color windowBg: hosted && !strong ? "transparent" : bg
    readonly property color card: glass ? (dark ? "#0DFFFFFF" : "#80FFFFFF") : (dark ? "#25292A" : "#FFFFFF")
    readonly property color well: dark ? "#12FFFFFF" : "#0F0C2020"
    // Opaque in glass: what shines through a brighter one takes its text the contrast.
    readonly property color raised: dark ? "#3B4243" : "#FFFFFF"
    readonly property color raisedEdge: dark ? "transparent" : hairline

    /// All the contrast there is: second texts as strong as the first, outlines where hairlines were.
    readonly property bool strong: Appearance.highContrast

    readonly property color text: strong ? (dark ? "#FFFFFF" : "#000000") : dark ? "#EEF1F1" : "#151F1E"
    readonly property color plainText2: dark ? "#A9B3B3" : "#55605E"
    readonly property color text2: strong ? text : glass ? mix(text, plainText2, (glassOpacity - 0.75) / 0.25) : plainText2
    readonly property color iconRest: glass || strong ? text2 : (dark ? "#8B9696" : "#6F7B79")

    readonly property color accent: dark ? (glass ? "#7FE5DC" : "#3CC7BD") : (glass ? "#05504C" : "#086B66")
    readonly property color accentInk: glass ? text : accent
    readonly property color accentFill: dark ? "#17918A" : "#086B66"
    readonly property color accentSoft: dark ? (glass ? "#1A3CC7BD" : "#293CC7BD") : "#1A086B66"
    readonly property color danger: dark ? (glass ? "#FFB4AD" : "#FF9A91") : (glass ? "#8E1B15" : "#B8261F")
    readonly property color dangerInk: glass ? text : danger
    readonly property color dangerSoft: dark ? "#1FFF9A91" : "#14B8261F"

    readonly property color hover: dark ? "#0FFFFFFF" : "#0D0C2020"
    readonly property color press: dark ? "#1CFFFFFF" : "#1A0C2020"
    readonly property color hairline: strong ? alpha(text, 0.6) : dark ? "#1AFFFFFF" : "#1C0C2020"
    readonly property color outline: strong ? alpha(text, 0.7) : dark ? "#29FFFFFF" : "#2E0C2020"
    readonly property color tileTop: dark ? "#454D4E" : "#EEF1F1"
    readonly property color tileBottom: dark ? "#2F3536" : "#D9DFDE"
    /// The letters and the plate of a theme without a picture, by the number of its tint.
    readonly property var tintInks: dark
        ? ["#B4BFBF", "#92CDC7", "#C2B3E3", "#A2BDE6", "#A3CBA0", "#E0A6A2"]
        : ["#55625F", "#2F6A66", "#61508A", "#37598B", "#3D6B3A", "#8F3F3B"]
    readonly property var tintPlates: dark
        ? ["#1AB4BFBF", "#1F92CDC7", "#1FC2B3E3", "#1FA2BDE6", "#1FA3CBA0", "#1FE0A6A2"]
        : ["#1455625F", "#1A2F6A66", "#1A61508A", "#1A37598B", "#1A3D6B3A", "#1A8F3F3B"]

    readonly property color knob: dark ? "#EEF1F1" : "#FFFFFF"
    readonly property color tipBg: dark ? "#EEF1F1" : "#1B1E1F"
    readonly property color tipText: dark ? "#151F1E" : "#EEF1F1"

    /// The user's text size over the one the lengths were drawn for.
    readonly property real textScale: Appearance.textScale
    /// Above this rows stack their texts, the filter takes two lines and more of a window scrolls.
    readonly property bool large: textScale >= 1.3
    readonly property string family: Appearance.fontFamily
    readonly property int sizeName: Math.round(20 * textScale)
    readonly property int sizeBody: Math.round(13 * textScale)
    readonly property int sizeCaption: Math.round(11 * textScale)

    readonly property int radius: 12
    readonly property int radiusInner: 8
    readonly property int radiusSegment: 6
    readonly property int shadowMargin: 24

    /// Glyphs grow with the text, but never above 28.
    function glyph(size: real): real { return Math.min(Math.max(size, 28), Math.round(size * textScale)); }
    /// A length that holds text.
    function scaled(length: real): real { return Math.round(length * textScale); }

    readonly property bool motion: !Appearance.reducedMotion
    readonly property int quick: motion ? 120 : 0
    readonly property int slide: motion ? 220 : 0
    readonly property int swap: motion ? 180 : 0
    readonly property int step: motion ? 160 : 0
    /// How texts fade in over 300 ms or less. The software renderer takes no step of the opacity below 0.00001:
    /// a curve that comes closer to the end than that leaves texts there, which it draws heavier.
    readonly property int fadeCurve: Easing.OutQuad

    // Without types on purpose: the toolkit's compiler reads the parts of a typed colour wrongly.
    function alpha(c, a) { return Qt.rgba(c.r, c.g, c.b, a); }
    function mix(a, b, k) {
        return Qt.rgba(a.r + (b.r - a.r) * k, a.g + (b.g - a.g) * k, a.b + (b.b - a.b) * k, 1);
    }
}
