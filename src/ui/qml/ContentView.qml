import QtQuick
import Zentrill

// The whole of the window: the sidebar, the header and one pane, and over them the modals.
FocusScope {
    id: view

    required property ContentViewState viewState

    readonly property bool modal: viewState.modalShown
    readonly property bool covered: modal || viewState.review.shown

    // Something can have been hidden or disabled while it had the focus, or was chosen to get it back.
    readonly property Item focused: Window.activeFocusItem
    readonly property bool focusIsLost: !covered && Window.active && (!focused || !focused.visible || !focused.enabled
        || [view, underneath, panes].includes(focused) || focused.parent === panes)

    // The pane's list takes it, or the pane's row of the sidebar where there is no list.
    function settleFocus() {
        if (!focusIsLost)
            return;
        // A row that is used again must not give it to a button that had it.
        if (focused && focused.parent !== panes && ![view, underneath, panes].includes(focused))
            focused.focus = false;
        const pane = [applications, models, docker, log].find(pane => pane.shown);
        if (!pane.item)
            return;
        const list = pane.item.entrance;
        const next = list.visible && list.enabled ? list : sidebar.selectedItem;
        next.forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitWidth: 950
    implicitHeight: 700
    focus: true
    onFocusIsLostChanged: Qt.callLater(settleFocus)

    // Keeps what a person did in a pane (where it was scrolled to) while another one is shown.
    component Pane: Loader {
        id: pane

        required property string tab
        required property url page
        readonly property bool shown: view.viewState.selectedPane === tab
        readonly property bool wanted: shown && view.viewState.windowShown

        // Named by its file, so that nothing of it is even read before it is wanted.
        function load() {
            if (wanted && status === Loader.Null)
                setSource(page, {
                    viewState: view.viewState
                });
        }

        anchors.fill: parent
        visible: shown
        focus: shown

        onWantedChanged: load()
        onLoaded: Qt.callLater(view.settleFocus)
        onStatusChanged: if (status === Loader.Error) view.viewState.reportFailedPart(source)
        Component.onCompleted: load()
    }

    FocusScope {
        id: underneath

        anchors.fill: parent
        // Disabled as a whole, so that neither a click nor a key nor an assistive tool reaches below a modal.
        enabled: !view.covered
        focus: !view.covered

        Rectangle {
            anchors.fill: parent
            color: WarmPalette.canvas
        }

        Sidebar {
            id: sidebar

            width: 208
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            viewState: view.viewState
        }

        Header {
            id: header

            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: parent.top
            viewState: view.viewState
        }

        FocusScope {
            id: panes

            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.bottom: parent.bottom
            focus: true

            Pane {
                id: applications

                tab: "apps"
                page: "ApplicationsPane.qml"
            }

            Pane {
                id: models

                tab: "models"
                page: "ModelsPane.qml"
            }

            Pane {
                id: docker

                tab: "containers"
                page: "DockerPane.qml"
            }

            Pane {
                id: log

                tab: "console"
                page: "ConsolePane.qml"
            }
        }
    }

    // A shortcut chose a pane, whose list goes on with the keys.
    Connections {
        target: view.viewState

        function onPaneEntered() {
            panes.forceActiveFocus(Qt.ShortcutFocusReason);
        }
    }

    Loader {
        id: shortcuts

        readonly property bool wanted: view.viewState.shortcutsShown

        anchors.fill: parent
        focus: wanted
        onStatusChanged: if (status === Loader.Error) view.viewState.reportFailedPart(source)
        onWantedChanged: if (wanted)
            setSource("ShortcutsPanel.qml", {
                viewState: view.viewState,
                focus: true
            });
        else {
            source = "";
            underneath.forceActiveFocus(Qt.PopupFocusReason);
        }
    }

    Loader {
        id: review

        readonly property bool wanted: view.viewState.review.shown && !view.modal

        // Made bit by bit, while the window goes on.
        asynchronous: true
        anchors.fill: parent
        focus: wanted
        // Until the panel takes it.
        Keys.onEscapePressed: view.viewState.review.close()
        onStatusChanged: if (status === Loader.Error) view.viewState.reportFailedPart(source)
        onWantedChanged: if (wanted)
            setSource("ReviewPanel.qml", {
                viewState: view.viewState,
                focus: true
            });
        else
            source = ""
    }

    Loader {
        id: overlay

        readonly property bool wanted: view.modal

        anchors.fill: parent
        focus: wanted
        onStatusChanged: if (status === Loader.Error) view.viewState.reportFailedPart(source)
        onWantedChanged: if (wanted)
            setSource("ModalOverlay.qml", {
                viewState: view.viewState,
                focus: true
            });
        else
            source = ""
        Component.onCompleted: wantedChanged()
    }
}
