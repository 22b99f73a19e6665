import QtQuick
import Zentrill

// The whole of the window: the sidebar, the header and one pane, and over them the modals.
FocusScope {
    id: view

    required property ContentViewState state_

    // Keeps what a person did in a pane (where it was scrolled to) while another one is shown.
    component Pane: Loader {
        required property string tab
        readonly property bool shown: view.state_.selectedPane === tab

        anchors.fill: parent
        visible: shown
        focus: shown
        active: false
        onShownChanged: if (shown)
            active = true
        Component.onCompleted: active = shown
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
            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.bottom: parent.bottom
            focus: true

            Pane {
                tab: "apps"
                sourceComponent: ApplicationsPane {
                    state_: view.state_
                }
            }

            Pane {
                tab: "models"
                sourceComponent: ModelsPane {
                    state_: view.state_
                }
            }

            Pane {
                tab: "containers"
                sourceComponent: DockerPane {
                    state_: view.state_
                }
            }

            Pane {
                tab: "console"
                sourceComponent: ConsolePane {
                    state_: view.state_
                }
            }
        }
    }

    Loader {
        anchors.fill: parent
        active: view.modal
        focus: view.modal
        sourceComponent: ModalOverlay {
            state_: view.state_
            focus: true
        }
    }
}
