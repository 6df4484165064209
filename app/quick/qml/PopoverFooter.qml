// The popover's last lines: the size of the cursors, and the ways back.
import QtQuick

Item {
    id: footer

    required property var popover
    readonly property real line: Math.max(28, Math.round(Theme.sizeBody * 1.4) + 4)

    implicitHeight: 12 + line + 8 + systemDefault.implicitHeight + 12
    enabled: popover.footerEnabled

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    Icon {
        id: glyph
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: slider.verticalCenter
        glyph: footer.popover.scaleIcon
        size: Theme.glyph(20)
        opacity: footer.enabled ? 1 : 0.45
    }
    ScaleSlider {
        id: slider
        anchors.left: glyph.right
        anchors.leftMargin: 12
        anchors.right: percent.left
        anchors.rightMargin: 12
        y: 12
        height: footer.line
        from: footer.popover.scaleFrom
        to: footer.popover.scaleTo
        stepSize: footer.popover.scaleStep
        notch: footer.popover.scaleNotch
        shown: footer.popover.scale
        onSlid: to => footer.popover.slide(to)
        Accessible.name: footer.popover.scaleName
        Accessible.description: footer.popover.arrowText === "" ? footer.popover.scaleText
                              : footer.popover.scaleText + ", " + footer.popover.arrowText
    }
    Text {
        id: percent
        /// Follows the value like a mass on a spring.
        property real shown: footer.popover.scalePercent
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: slider.verticalCenter
        width: Math.max(36, widest.advanceWidth + 1)
        horizontalAlignment: Text.AlignRight
        textFormat: Text.PlainText
        text: footer.popover.percentText(Math.round(shown))
        font.family: Theme.family
        font.pixelSize: Theme.sizeBody
        font.weight: Font.Medium
        color: footer.enabled ? Theme.text : Theme.iconRest
        Accessible.role: Accessible.StaticText
        Accessible.name: footer.popover.scaleText
        Behavior on shown {
            enabled: Theme.motion
            SpringAnimation {
                spring: footer.popover.percentStiffness
                damping: footer.popover.percentFriction
                epsilon: 0.4
            }
        }
        TextMetrics {
            id: widest
            font: percent.font
            text: "888%"
        }
        HoverHandler { id: overPercent }
        Tip {
            objectName: "arrowTip"
            text: footer.popover.arrowText
            y: -height - 6
            visible: text !== "" && (overPercent.hovered || slider.visualFocus)
        }
    }
    Item {
        id: buttons
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 12 + footer.line + 8
        height: systemDefault.implicitHeight
        /// What is left beside both texts, for the glyph of the one or of both.
        readonly property real spare: width - 8 - systemDefault.textWidth - reset.textWidth - 32
        readonly property real keptForGlyph: spare >= systemDefault.glyphRoom ? systemDefault.glyphRoom : 0
        PushButton {
            id: systemDefault
            anchors.left: parent.left
            anchors.right: reset.left
            anchors.rightMargin: 8
            height: parent.height
            leftPadding: 8
            rightPadding: 8
            iconName: inForce && buttons.keptForGlyph > 0 ? footer.popover.systemDefaultIcon : ""
            inForce: footer.popover.systemDefaultInForce
            text: footer.popover.systemDefault
            Accessible.description: footer.popover.systemDefaultHelp
            onClicked: footer.popover.resetToDefault()
        }
        PushButton {
            id: reset
            anchors.right: parent.right
            height: parent.height
            leftPadding: 8
            rightPadding: 8
            width: Math.max(implicitWidth, Math.min(Math.round((parent.width - 8) * 0.38), parent.width - 8
                            - systemDefault.textWidth - 16 - buttons.keptForGlyph))
            iconName: buttons.spare >= 2 * glyphRoom ? footer.popover.resetIcon : ""
            text: footer.popover.reset
            Accessible.description: footer.popover.resetHelp
            onClicked: footer.popover.resetScale()
            Tip {
                objectName: "resetTip"
                text: footer.popover.resetHelp
                // Beside the button, so that the slider stays free.
                width: Math.min(implicitWidth, systemDefault.width)
                x: reset.mirrored ? reset.width + 8 : -width - 8
                y: Math.max(Math.round((reset.height - height) / 2), -8)
                // Not over the percentage that has just become what it promises.
                visible: reset.hovered && !reset.pressed && footer.popover.scale !== footer.popover.scaleNotch
            }
        }
    }
}
