// The about window: icon, name, version, features, contact. Plays its entrance each time it comes on screen.
import QtQuick

Page {
    id: view

    required property QtObject model
    onOnScreenChanged: if (onScreen) model.appear()

    topMargin: Math.max(8, 36 - titleStrip)
    bottomMargin: 20
    focus: true
    Keys.onEscapePressed: model.dismiss()

    Item {
        width: parent.width
        height: 96
        Image {
            id: glow
            anchors.centerIn: parent
            width: 208
            height: 208
            source: "qrc:/pintle/icons/glow.svg"
            sourceSize: Qt.size(208, 208)
            opacity: view.model.glowOpacityAtFirst
        }
        Image {
            id: icon
            anchors.centerIn: parent
            width: 96
            height: 96
            source: "qrc:/pintle/icons/app.svg"
            sourceSize: Qt.size(192, 192)
            smooth: true
            mipmap: true
            scale: view.model.iconScaleAtFirst
            Accessible.role: Accessible.Graphic
            Accessible.name: view.model.name
        }
        states: State {
            name: "entered"
            when: view.model.appeared && view.onScreen
            PropertyChanges { target: icon; scale: view.model.iconScale }
            PropertyChanges { target: glow; opacity: view.model.glowOpacity }
        }
        transitions: Transition {
            to: "entered"
            enabled: Theme.motion
            NumberAnimation {
                target: icon
                property: "scale"
                duration: view.model.iconDuration
                easing.type: Easing.OutBack
                easing.overshoot: 1.1
            }
            NumberAnimation {
                target: glow
                property: "opacity"
                duration: view.model.iconDuration
                easing.type: Easing.OutCubic
            }
        }
    }
    component Line: Text {
        width: parent.width
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        font.family: Theme.family
        color: Theme.text
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    component Gap: Item { width: 1 }

    Gap { height: 12 }
    Line {
        text: view.model.name
        font.pixelSize: Theme.sizeName
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Gap { height: 3 }
    Line {
        text: view.model.versionText
        font.pixelSize: Theme.sizeCaption
        color: Theme.text2
    }
    Gap { height: 10 }
    Line {
        text: view.model.tagline
        font.pixelSize: Theme.sizeBody
    }
    Gap { height: 22 }
    Section {
        width: parent.width
        title: view.model.featuresTitle
        symbol: view.model.featuresSymbol
        Gap { height: 4 }
        Repeater {
            model: view.model.features
            delegate: Item {
                id: feature
                required property var modelData
                width: parent.width
                height: Math.max(36, words.height + 12)
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.text
                Item {
                    id: moving
                    width: parent.width
                    height: parent.height
                    y: view.model.rowRise
                    opacity: 0
                    Icon {
                        id: glyph
                        anchors.left: parent.left
                        anchors.leftMargin: 16
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: feature.modelData.symbol
                        size: Theme.glyph(20)
                    }
                    Text {
                        id: words
                        anchors.left: glyph.right
                        anchors.leftMargin: 12
                        anchors.right: parent.right
                        anchors.rightMargin: 16
                        anchors.verticalCenter: parent.verticalCenter
                        textFormat: Text.PlainText
                        text: feature.modelData.text
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        font.family: Theme.family
                        font.pixelSize: Theme.sizeBody
                        color: Theme.text
                        Accessible.ignored: true
                    }
                }
                states: State {
                    name: "entered"
                    when: view.model.featuresAppeared && view.onScreen
                    PropertyChanges { target: moving; y: 0; opacity: 1 }
                }
                transitions: Transition {
                    to: "entered"
                    enabled: Theme.motion
                    SequentialAnimation {
                        PauseAnimation { duration: feature.modelData.delay }
                        ParallelAnimation {
                            NumberAnimation {
                                target: moving
                                property: "y"
                                duration: view.model.rowDuration
                                easing.type: Easing.OutCubic
                            }
                            NumberAnimation {
                                target: moving
                                property: "opacity"
                                duration: view.model.rowDuration
                                easing.type: Theme.fadeCurve
                            }
                        }
                    }
                }
            }
        }
        Gap { height: 4 }
    }
    Gap { height: 14 }
    // No button of the toolkit, which would not let it be a link.
    Item {
        id: contact
        readonly property bool ringed: activeFocus
        readonly property bool hovered: hover.hovered

        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width, link.implicitWidth + mail.width + 8 + 24)
        height: Math.max(28, link.height + 8)
        activeFocusOnTab: true
        Accessible.role: Accessible.Link
        Accessible.name: view.model.contactText
        Accessible.description: view.model.contactAddress
        Accessible.focusable: true
        Accessible.onPressAction: view.model.openContact()
        Keys.onReturnPressed: view.model.openContact()
        Keys.onEnterPressed: view.model.openContact()
        Keys.onSpacePressed: view.model.openContact()
        TapHandler {
            id: tap
            onTapped: view.model.openContact()
        }
        HoverHandler {
            id: hover
            cursorShape: Qt.PointingHandCursor
        }
        Icon {
            id: mail
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            symbol: view.model.contactSymbol
            size: Theme.glyph(16)
            color: Theme.accent
        }
        Text {
            id: link
            anchors.left: mail.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            textFormat: Text.PlainText
            text: view.model.contactText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            font.family: Theme.family
            font.pixelSize: Theme.sizeBody
            font.underline: contact.hovered || contact.ringed
            color: tap.pressed ? Theme.text : Theme.accentInk
            Accessible.ignored: true
        }
        FocusRing { shown: contact.ringed }
        Tip {
            text: view.model.contactAddress
            visible: contact.hovered || contact.ringed
        }
    }
}
