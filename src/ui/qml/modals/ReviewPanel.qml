import QtQuick
import Zentrill

// What a removal would do, path by path. It removes nothing, and nothing below it can be pressed.
FocusScope {
    id: panel

    required property ContentViewState viewState
    readonly property ReviewState review: viewState.review

    // An assistive tool can give the focus to anything, even to what is disabled.
    function keepFocus() {
        if (review.shown && !viewState.modalShown && !activeFocus)
            forceActiveFocus(Qt.PopupFocusReason);
    }

    function step(forward: bool) {
        const next = Window.activeFocusItem ? Window.activeFocusItem.nextItemInFocusChain(forward) : null;
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

    Component.onCompleted: forceActiveFocus(Qt.PopupFocusReason)
    onActiveFocusChanged: if (!activeFocus) Qt.callLater(panel.keepFocus)

    Keys.onEscapePressed: review.close()

    // Tab stays in here.
    Keys.onTabPressed: step(true)
    Keys.onBacktabPressed: step(false)

    component Figure: Column {
        id: figure

        required property string caption
        required property string value
        property color tint: WarmPalette.paper

        spacing: 2
        Accessible.role: Accessible.StaticText
        Accessible.name: caption + ": " + value

        PlainText {
            text: figure.caption
            font: Typography.caption
            color: WarmPalette.tertiary
        }

        PlainText {
            text: figure.value === "" ? "…" : figure.value
            font: Typography.section
            color: figure.tint
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.45)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    ModalCard {
        anchors.centerIn: parent
        width: Math.min(parent.width - 64, 860)
        height: parent.height - 64
        Accessible.role: Accessible.Dialog
        Accessible.name: panel.review.title

        ElidedText {
            id: title

            anchors.left: parent.left
            anchors.leftMargin: 24
            anchors.right: spinner.left
            anchors.rightMargin: 16
            y: 20
            text: panel.review.title
            font: Typography.resultTitle
            color: WarmPalette.paper
            elide: Text.ElideMiddle
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        BusySpinner {
            id: spinner

            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: title.verticalCenter
            visible: panel.review.computing
            running: visible
        }

        Label {
            id: note

            anchors.left: title.left
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.top: title.bottom
            anchors.topMargin: 4
            text: qsTr("What a removal would do now. Nothing is removed here.")
            font: Typography.detail
            color: WarmPalette.secondary
            wrapMode: Text.Wrap
        }

        Row {
            id: figures

            anchors.left: title.left
            anchors.top: note.bottom
            anchors.topMargin: 16
            spacing: 44

            Figure {
                caption: qsTr("Goes")
                value: panel.review.going
                tint: WarmPalette.danger
            }

            Figure {
                caption: qsTr("Comes free")
                value: panel.review.comingFree
            }
        }

        Hairline {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: figures.bottom
            anchors.topMargin: 14
        }

        RecordList {
            id: rows

            anchors.top: figures.bottom
            anchors.topMargin: 15
            anchors.bottom: foot.top
            anchors.left: parent.left
            anchors.right: parent.right
            sideMargin: 16
            spacing: 2
            topMargin: 8
            bottomMargin: 8
            focus: true
            model: panel.review.rows
            copyOf: row => panel.viewState.paths.copyText(itemAtIndex(row).label)
            Accessible.role: Accessible.List
            Accessible.name: qsTr("What goes and what stays")

            delegate: ReviewRowView {
                width: rows.rowWidth
                list: rows
                expandable: panel.review.canListMore
                onMoreWanted: panel.review.listMore()
            }
        }

        Item {
            id: foot

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            height: 62

            Hairline {
                anchors.left: parent.left
                anchors.right: parent.right
            }

            ActionButton {
                id: close

                anchors.right: parent.right
                anchors.rightMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                implicitHeight: 32
                sidePadding: 18
                text: qsTr("Close")
                onClicked: panel.review.close()
            }

            // Comes last: one key there turns the protection off.
            ShieldSwitch {
                id: shield

                anchors.left: parent.left
                anchors.leftMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                visible: panel.review.shielded
                checked: panel.viewState.controller.preserveCredentials
                onToggled: panel.viewState.controller.preserveCredentials = checked
            }

            ElidedText {
                anchors.left: shield.right
                anchors.leftMargin: 16
                anchors.right: close.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                visible: shield.visible
                text: panel.viewState.shieldCaption
                font: Typography.caption
                color: panel.viewState.controller.preserveCredentials ? WarmPalette.secondary : WarmPalette.danger
            }
        }
    }
}
