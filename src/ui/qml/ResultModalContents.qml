import QtQuick
import Zentrill

// What came of an operation. It only displays; dismissing it changes nothing on disk.
ModalCard {
    id: modal

    required property ContentViewState state_

    readonly property ResultState result: state_.result
    readonly property UninstallerViewModel controller: state_.controller
    // What is left for the message and the errors in a small window.
    required property real room

    signal dismiss

    hairline: 0.24
    width: 560
    height: body.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: controller.resultAlertTitle
    Accessible.description: result.outcomeLabel

    Column {
        id: body

        x: 26
        y: 24
        width: parent.width - 52
        spacing: 0

        Item {
            width: parent.width
            height: Math.max(sign.height, words.implicitHeight)

            Icon {
                id: sign

                anchors.verticalCenter: parent.verticalCenter
                name: modal.result.outcomeIcon
                size: 28
                tint: modal.result.outcomeColor
            }

            Column {
                id: words

                anchors.left: sign.right
                anchors.leftMargin: 14
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 3

                Text {
                    text: modal.result.outcomeLabel
                    textFormat: Text.PlainText
                    font: Typography.caption
                    color: modal.result.outcomeColor
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }

                Text {
                    width: parent.width
                    text: modal.controller.resultAlertTitle
                    textFormat: Text.PlainText
                    font: Typography.resultTitle
                    color: WarmPalette.paper
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
            }
        }

        Item {
            width: 1
            height: 16
        }

        LineListView {
            id: messages

            width: parent.width
            height: Math.min(contentHeight, errors.count > 0 ? modal.room * 0.4 : modal.room)
            leftMargin: 0
            rightMargin: 0
            topMargin: 0
            bottomMargin: 0
            following: false
            cacheBuffer: 2000
            lineFont: Typography.detail
            model: modal.result.messageLines
            selection: modal.result.messageSelection
            Accessible.name: qsTr("Message")
        }

        Item {
            width: 1
            height: 12
            visible: errors.count > 0
        }

        Rectangle {
            visible: errors.count > 0
            width: parent.width
            height: errors.height + 16
            radius: 8
            color: WarmPalette.canvas

            LineListView {
                id: errors

                y: 8
                width: parent.width
                height: Math.min(contentHeight, 290, modal.room * 0.6)
                leftMargin: 12
                rightMargin: 12
                topMargin: 0
                bottomMargin: 0
                following: false
                lineFont: Typography.detail
                lineColor: WarmPalette.danger
                model: modal.result.errorLines
                selection: modal.result.errorSelection
                Accessible.name: qsTr("Errors")
            }
        }

        Text {
            width: parent.width
            visible: modal.result.hasRetainedPaths
            topPadding: 12
            text: qsTr("Scroll to inspect all retained paths. Dismissing does not delete them.")
            textFormat: Text.PlainText
            font: Typography.caption
            color: WarmPalette.tertiary
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Item {
            width: 1
            height: 22
        }

        ActionButton {
            anchors.right: parent.right
            implicitHeight: 32
            sidePadding: 22
            kind: "primary"
            focus: true
            text: qsTr("OK")
            onClicked: modal.dismiss()
        }
    }
}
