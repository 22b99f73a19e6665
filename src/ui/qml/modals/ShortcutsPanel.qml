import QtQuick
import Zentrill

// Lists the shortcuts over the window, for as long as it is looked at: any click and Escape close it.
FocusScope {
    id: panel

    required property ContentViewState viewState

    function close() {
        viewState.shortcutsShown = false;
    }

    Component.onCompleted: forceActiveFocus(Qt.PopupFocusReason)
    // Nothing in here is stepped to, and what lies around it is not meant.
    Keys.onTabPressed: event => event.accepted = true
    Keys.onBacktabPressed: event => event.accepted = true
    Keys.onEscapePressed: close()

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: panel.close()
        onWheel: wheel => wheel.accepted = true
    }

    ModalCard {
        anchors.centerIn: parent
        width: lines.width + 52
        height: lines.height + 48
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: title.text

        Column {
            id: lines

            x: 26
            y: 24
            spacing: 9

            Label {
                id: title

                text: qsTr("Keyboard Shortcuts")
                font: Typography.section
                color: WarmPalette.paper
                bottomPadding: 7
                Accessible.role: Accessible.Heading
            }

            Repeater {
                model: Shortcuts.purposes

                Row {
                    id: line

                    required property int index
                    required property string modelData

                    spacing: 20
                    Accessible.role: Accessible.StaticText
                    Accessible.name: keys.text + ": " + modelData

                    PlainText {
                        id: keys

                        width: 170
                        text: Shortcuts.keyTexts[line.index]
                        font: Typography.control
                        color: WarmPalette.copper
                    }

                    PlainText {
                        text: line.modelData
                        font: Typography.body
                        color: WarmPalette.secondary
                    }
                }
            }

            Label {
                topPadding: 7
                text: qsTr("Zentrill, version %1").arg(Qt.application.version)
                font: Typography.caption
                color: WarmPalette.tertiary
            }
        }
    }
}
