import QtQuick
import Zentrill

// States what will be destroyed and waits for its code to be typed.
ModalCard {
    id: modal

    required property ConfirmationState confirmation
    // The card's height at most.
    required property real room

    width: 460
    height: body.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: confirmation.title
    Accessible.description: confirmation.message

    // What the code's field has no use for scrolls the message.
    Keys.onPressed: event => message.takeKey(event)

    Column {
        id: body

        x: 26
        y: 24
        width: parent.width - 52
        spacing: 12

        Item {
            id: heading

            width: parent.width
            height: Math.max(sign.height, title.implicitHeight)

            Icon {
                id: sign

                name: "exclamationmark.triangle.fill"
                size: 20
                tint: WarmPalette.danger
                y: 2
            }

            Label {
                id: title

                anchors.left: sign.right
                anchors.leftMargin: 12
                anchors.right: parent.right
                text: modal.confirmation.title
                font: Typography.section
                color: WarmPalette.paper
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
        }

        ScrollingText {
            id: message

            width: parent.width
            height: Math.min(implicitHeight, Math.max(40, modal.room - 48 - heading.height - authorization.height - 2 * body.spacing))
            text: modal.confirmation.message
            font: Typography.body
            color: WarmPalette.secondary
            lineHeight: 1.3
        }

        Column {
            id: authorization

            width: parent.width
            topPadding: 10
            spacing: 12

            Column {
                width: parent.width
                spacing: 8

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Type this code manually to authorize the action:")
                    font: Typography.body
                    color: WarmPalette.paper
                }

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: modal.confirmation.confirmationCode
                    font: Typography.code
                    color: WarmPalette.copper
                    Accessible.name: qsTr("Confirmation code")
                    Accessible.description: text
                }
            }

            Column {
                width: parent.width
                spacing: 8

                ManualConfirmationCodeField {
                    id: field

                    anchors.horizontalCenter: parent.horizontalCenter
                    focus: true
                    onChange: modal.confirmation.confirmationInput = text
                    onAccepted: modal.confirmation.confirm()

                    Connections {
                        target: modal.confirmation

                        function onConfirmationInputChanged() {
                            field.show(modal.confirmation.confirmationInput);
                        }
                    }
                }

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Paste and drag-and-drop are disabled.")
                    font: Typography.caption
                    color: WarmPalette.tertiary
                }
            }

            Row {
                anchors.right: parent.right
                topPadding: 12
                spacing: 10

                ActionButton {
                    text: qsTr("Cancel")
                    implicitHeight: 32
                    onClicked: modal.confirmation.dismissModal()
                }

                ActionButton {
                    text: modal.confirmation.actionTitle
                    implicitHeight: 32
                    kind: "destructive"
                    enabled: modal.confirmation.matches
                    onClicked: modal.confirmation.confirm()
                }
            }
        }
    }
}
