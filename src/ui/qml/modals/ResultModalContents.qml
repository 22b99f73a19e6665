import QtQuick
import Zentrill

// What came of an operation. It only displays; dismissing it changes nothing on disk.
ModalCard {
    id: modal

    required property ContentViewState viewState
    // The card's height at most.
    required property real room
    // What a menu lies over.
    required property Item area

    readonly property ResultState result: viewState.result
    readonly property UninstallerViewModel controller: viewState.controller

    // What of it is left for the two lists. The errors come first, up to a height of 290, but leave a few lines to
    // a message that needs them.
    readonly property real roomForLines: room - 48 - heading.height - 16 - (errors.count > 0 ? 28 : 0)
                                         - (note.visible ? 12 + note.height : 0) - 22 - ok.height
    readonly property real errorsHeight: errors.count === 0 ? 0 : Math.min(errors.contentHeight, 290, Math.max(60, roomForLines - Math.min(messages.contentHeight, 96)))
    readonly property real messagesHeight: Math.min(messages.contentHeight, Math.max(40, roomForLines - errorsHeight))

    readonly property bool seen: viewState.input.settled

    signal dismiss

    hairline: 0.24
    width: 560
    height: body.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: controller.resultAlertTitle
    Accessible.description: controller.resultAlertMessage
    Accessible.focusable: true

    // It is announced itself; its button takes over once the result can have been seen, so that a Return which
    // was meant for something else does not dismiss it.
    focus: true
    onSeenChanged: if (seen && focus)
        ok.forceActiveFocus(Qt.PopupFocusReason)

    PathEntries {
        id: pathEntries

        paths: modal.viewState.paths
    }

    Column {
        id: body

        x: 26
        y: 24
        width: parent.width - 52
        spacing: 22

        Column {
            width: parent.width
            spacing: 16

            Item {
                id: heading

                width: parent.width
                height: Math.max(sign.height, words.implicitHeight)

                Icon {
                    id: sign

                    anchors.verticalCenter: parent.verticalCenter
                    name: modal.result.outcomeIcon
                    size: 28
                    tint: modal.result.outcomeColor
                    Accessible.role: Accessible.Graphic
                    Accessible.name: modal.result.outcomeLabel
                }

                Column {
                    id: words

                    anchors.left: sign.right
                    anchors.leftMargin: 14
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 3

                    Label {
                        text: modal.result.outcomeLabel
                        font: Typography.caption
                        color: modal.result.outcomeColor
                    }

                    Label {
                        width: parent.width
                        text: modal.controller.resultAlertTitle
                        font: Typography.resultTitle
                        color: WarmPalette.paper
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.Heading
                    }
                }
            }

            Column {
                width: parent.width
                spacing: 12

                // The list cuts off what lies outside of it, such as the mark of its focus.
                Item {
                    id: messageArea

                    width: parent.width
                    height: messages.height

                    LineListView {
                        id: messages

                        // For assistive tools.
                        function showMenu() {
                            openCurrentMenu();
                        }

                        // The scroll bar stands beside the text.
                        width: parent.width + 16
                        height: modal.messagesHeight
                        leftMargin: 0
                        rightMargin: 16
                        topMargin: 0
                        bottomMargin: 0
                        following: false
                        cacheBuffer: 2000
                        lineFont: Typography.detail
                        lineHeight: 1.3
                        model: modal.result.messageLines
                        selection: modal.result.messageSelection
                        markArea: messageArea
                        markMargin: -7
                        menuArea: modal.area
                        menuOf: row => pathEntries.of(modal.result.retainedPath(row))
                        Accessible.name: qsTr("Message")
                    }
                }

                Rectangle {
                    id: plate

                    visible: errors.count > 0
                    width: parent.width
                    height: errors.height + 16
                    radius: 8
                    color: WarmPalette.canvas

                    LineListView {
                        id: errors

                        markArea: plate
                        y: 8
                        width: parent.width
                        height: modal.errorsHeight
                        leftMargin: 12
                        rightMargin: 16
                        topMargin: 0
                        bottomMargin: 0
                        following: false
                        cacheBuffer: 600
                        lineFont: Typography.detail
                        lineHeight: 1.3
                        lineColor: WarmPalette.danger
                        model: modal.result.errorLines
                        selection: modal.result.errorSelection
                        Accessible.name: qsTr("Errors")
                    }
                }

                Label {
                    id: note

                    width: parent.width
                    visible: modal.result.hasRetainedPaths
                    text: qsTr("Scroll to inspect all retained paths. Dismissing does not delete them.")
                    font: Typography.caption
                    color: WarmPalette.tertiary
                    wrapMode: Text.Wrap
                }
            }
        }

        Item {
            width: parent.width
            height: ok.height

            ElidedText {
                anchors.left: parent.left
                anchors.right: ok.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: modal.controller.resultAlertFreeSpace
                font: Typography.detail
                color: WarmPalette.secondary
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            ActionButton {
                id: ok

                anchors.right: parent.right
                implicitHeight: 32
                sidePadding: 22
                kind: "primary"
                text: qsTr("OK")
                onClicked: modal.dismiss()
            }
        }
    }
}
