// The settings window: titled sections one below the other. What they hold besides toggles goes by their kind.
import QtQuick
import Pintle.Shell

Page {
    id: view

    required property QtObject model
    onOnScreenChanged: if (onScreen) model.appear()

    spacing: 20
    topMargin: titleStrip > 0 ? 8 : 16

    Repeater {
        model: view.model.sections
        delegate: Section {
            id: section
            required property var modelData

            width: parent.width
            title: modelData.title
            symbol: modelData.symbol
            value: modelData.kind === "cursorSize" ? view.model.cursorScaleText : ""

            Repeater {
                model: section.modelData.toggles
                delegate: ToggleRow {
                    required property var modelData
                    required property int index
                    width: parent.width
                    first: index === 0
                    title: modelData.title
                    subtitle: modelData.subtitle
                    symbol: modelData.symbol
                    on: view.model.toggleStates[modelData.toggle]
                    enabled: modelData.enabled
                    onFlipped: on => view.model.setToggle(modelData.toggle, on)
                }
            }
            Loader {
                width: parent.width
                visible: status === Loader.Ready
                sourceComponent: ({ interfaceStyle: glassContent, cursorSize: sizeContent, exclusions: exclusionContent, reset: resetContent })[section.modelData.kind] ?? null
            }
        }
    }

    Component {
        id: glassContent
        Item {
            id: glassContentItem
            // What blends nothing shows no glass, whatever the switch says.
            readonly property bool blends: Appearance.blendsWindows || Appearance.nativelyHosted
            implicitHeight: percentage.height + slider.height + 24 + (note.visible ? note.height + 8 : 0)
            Rectangle {
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.leftMargin: 48
                anchors.rightMargin: 1
                height: 1
                color: Theme.hairline
            }
            Text {
                anchors.left: parent.left
                anchors.leftMargin: 48
                anchors.right: percentage.left
                anchors.rightMargin: 12
                y: 12
                textFormat: Text.PlainText
                text: view.model.texts.glassOpacity
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Theme.sizeBody
                color: Theme.text
                opacity: slider.opacity
                Accessible.ignored: true
            }
            Text {
                id: percentage
                anchors.right: parent.right
                anchors.rightMargin: 16
                y: 12
                textFormat: Text.PlainText
                text: view.model.glassOpacityText
                font.family: Theme.family
                font.pixelSize: Theme.sizeBody
                font.weight: Font.Medium
                color: Theme.text
                opacity: slider.opacity
                Accessible.ignored: true
            }
            Text {
                id: note
                anchors.left: parent.left
                anchors.leftMargin: 48
                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.top: slider.bottom
                anchors.topMargin: 4
                visible: !glassContentItem.blends
                textFormat: Text.PlainText
                text: view.model.texts.needsCompositor
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Theme.sizeCaption
                color: Theme.text2
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            ScaleSlider {
                id: slider
                anchors.left: parent.left
                anchors.leftMargin: 48
                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.top: percentage.bottom
                anchors.topMargin: 4
                enabled: view.model.glassOpacityEnabled && glassContentItem.blends
                opacity: enabled ? 1 : 0.45
                from: view.model.glassOpacityFrom
                to: view.model.glassOpacityTo
                stepSize: view.model.glassOpacityStep
                // A wheel that passes over it scrolls the page.
                wheelEnabled: activeFocus
                shown: view.model.glassOpacity
                Accessible.name: view.model.texts.glassOpacity
                Accessible.description: note.visible ? note.text : ""
                onSlid: to => view.model.setGlassOpacity(to)
            }
        }
    }
    Component {
        id: sizeContent
        Item {
            implicitHeight: buttons.height + 24
            ScaleButtons {
                id: buttons
                x: 12
                y: 12
                width: parent.width - 24
                height: implicitHeight
                name: view.model.texts.cursorSize
                symbol: view.model.texts.pointerSymbol
                entries: view.model.scales
                current: view.model.selectedScale
                onChosen: scale => view.model.selectScale(scale)
            }
        }
    }
    Component {
        id: exclusionContent
        ExclusionList { model: view.model }
    }
    Component {
        id: resetContent
        Item {
            implicitHeight: explanation.height + button.height + 44
            Text {
                id: explanation
                x: 16
                y: 14
                width: parent.width - 32
                textFormat: Text.PlainText
                text: view.model.texts.resetExplanation
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                font.family: Theme.family
                font.pixelSize: Theme.sizeCaption
                color: Theme.text2
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PushButton {
                id: button
                anchors.left: parent.left
                anchors.leftMargin: 16
                anchors.top: explanation.bottom
                anchors.topMargin: 14
                width: Math.min(implicitWidth, parent.width - 32)
                danger: true
                symbol: view.model.texts.trashSymbol
                text: view.model.texts.resetButton
                onClicked: view.model.resetApplication()
            }
        }
    }
}
