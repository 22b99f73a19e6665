import QtQuick
import Zentrill

// The whole of the window: the sidebar, the header and one pane, and over them the modals.
FocusScope {
    id: view

    required property ContentViewState state_

    // Keeps what a person did in a pane (where it was scrolled to) while another one is shown.
    component Pane: Loader {
        id: pane

        required property string tab
        required property url page
        readonly property bool shown: view.state_.selectedPane === tab
        readonly property bool wanted: shown && view.state_.windowShown

        anchors.fill: parent
        visible: shown
        focus: shown
        // Named by its file, so that nothing of it is even read before it is wanted.
        function load() {
            if (wanted && status === Loader.Null)
                setSource(page, {
                    state_: view.state_
                });
        }

        // What had the focus before a modal may be disabled by what was confirmed; the list takes it then.
        function settleFocus() {
            if (shown && item && !view.modal && [pane, panes, underneath].includes(Window.activeFocusItem))
                item.entrance.forceActiveFocus(Qt.OtherFocusReason);
        }

        onWantedChanged: load()
        onStatusChanged: if (status === Loader.Error) view.state_.reportFailedPart(source)
        Component.onCompleted: load()

        Connections {
            target: view

            function onModalChanged() {
                Qt.callLater(pane.settleFocus);
            }
        }
    }

    readonly property bool modal: state_.modalShown

    implicitWidth: 950
    implicitHeight: 700
    focus: true

    FocusScope {
        id: underneath

        anchors.fill: parent
        // Disabled as a whole, so that neither a click nor a key nor an assistive tool reaches below a modal.
        enabled: !view.modal
        focus: !view.modal

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
            state_: view.state_
        }

        Header {
            id: header

            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: parent.top
            state_: view.state_
        }

        FocusScope {
            id: panes

            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.bottom: parent.bottom
            focus: true

            Pane {
                tab: "apps"
                page: "ApplicationsPane.qml"
            }

            Pane {
                tab: "models"
                page: "ModelsPane.qml"
            }

            Pane {
                tab: "containers"
                page: "DockerPane.qml"
            }

            Pane {
                tab: "console"
                page: "ConsolePane.qml"
            }
        }
    }

    Loader {
        id: overlay

        readonly property bool wanted: view.modal

        anchors.fill: parent
        focus: wanted
        onStatusChanged: if (status === Loader.Error) view.state_.reportFailedPart(source)
        onWantedChanged: if (wanted)
            setSource("ModalOverlay.qml", {
                state_: view.state_,
                focus: true
            });
        else
            source = ""
        Component.onCompleted: wantedChanged()
    }
}
