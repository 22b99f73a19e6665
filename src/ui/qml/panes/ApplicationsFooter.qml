import QtQuick
import Zentrill

// The Safety Shield, the number of selected tools, and the way to remove them.
Rectangle {
    id: footer

    required property ContentViewState viewState

    // Where the number and what stands beneath it begin.
    readonly property real figures: size.visible ? Math.min(count.x, size.x) : count.x

    implicitHeight: 76
    color: WarmPalette.canvas

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
    }

    Label {
        id: count

        anchors.right: uninstall.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: footer.viewState.selectionCount
        font: Typography.caption
        color: review.hovered ? WarmPalette.paper : WarmPalette.secondary
    }

    // Beneath the number, which stays where it is.
    Label {
        id: size

        anchors.right: count.right
        anchors.top: count.bottom
        anchors.topMargin: 3
        visible: text !== ""
        text: footer.viewState.selectionSize.text
        font: Typography.caption
        color: WarmPalette.tertiary
    }

    // Around the number: pressed, it leads to the review of what is selected.
    Pressable {
        id: review

        readonly property bool visualFocus: activeFocus && KeyboardUse.current

        anchors.fill: count
        anchors.leftMargin: footer.figures - count.x - 8
        anchors.rightMargin: -8
        anchors.topMargin: -7
        anchors.bottomMargin: -7 - (size.visible ? size.height + size.anchors.topMargin : 0)
        enabled: footer.viewState.canReviewSelection
        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Review selected")
        onClicked: footer.viewState.reviewSelection()

        Rectangle {
            anchors.fill: parent
            z: -1
            radius: 7
            visible: review.hovered || review.down
            color: WarmPalette.faint(WarmPalette.paper, review.down ? 0.14 : 0.08)
        }

        FocusRing {
            anchors.margins: 0
            visible: review.visualFocus
        }

        TipLoader {
            text: qsTr("Review what goes and what stays")
            wanted: !review.down && (review.hovered || review.visualFocus)
        }
    }

    ActionButton {
        id: uninstall

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: 34
        sidePadding: 16
        kind: "primary"
        text: qsTr("Uninstall Selected")
        enabled: footer.viewState.canUninstall
        onClicked: footer.viewState.requestUninstall()
    }

    // Comes last for keyboard and screen reader: one key there turns the protection off.
    Column {
        anchors.left: parent.left
        anchors.leftMargin: 20
        width: footer.figures - 16 - x
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        ShieldSwitch {
            checked: footer.viewState.controller.preserveCredentials
            onToggled: footer.viewState.controller.preserveCredentials = checked
        }

        ElidedText {
            width: parent.width
            text: footer.viewState.shieldCaption
            font: Typography.caption
            color: footer.viewState.controller.preserveCredentials ? WarmPalette.secondary : WarmPalette.danger
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
