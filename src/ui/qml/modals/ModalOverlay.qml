import QtQuick
import Zentrill

// Dims the window, takes every press on it, and shows the modal of the moment.
FocusScope {
    id: overlay

    required property ContentViewState viewState

    readonly property bool showsResult: viewState.resultShown

    function step(forward: bool) {
        const next = Window.activeFocusItem ? Window.activeFocusItem.nextItemInFocusChain(forward) : null;
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

    function keepFocus() {
        if (viewState.modalShown && !activeFocus)
            forceActiveFocus(Qt.PopupFocusReason);
    }

    Keys.onEscapePressed: viewState.confirmation.dismissModal()

    // Tab stays among the modal's own controls.
    Keys.onTabPressed: step(true)
    Keys.onBacktabPressed: step(false)

    Component.onCompleted: forceActiveFocus(Qt.PopupFocusReason)

    // An assistive tool can give the focus to anything, even to what is disabled: the modal takes it back.
    onActiveFocusChanged: if (!activeFocus) Qt.callLater(overlay.keepFocus)

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.62)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Loader {
        anchors.centerIn: parent
        focus: true
        sourceComponent: overlay.showsResult ? result : confirmation
    }

    Component {
        id: confirmation

        ConfirmationModal {
            confirmation: overlay.viewState.confirmation
            room: overlay.height - 40
        }
    }

    Component {
        id: result

        ResultModalContents {
            room: overlay.height - 40
            area: overlay
            viewState: overlay.viewState
            onDismiss: overlay.viewState.confirmation.dismissModal()
        }
    }
}
