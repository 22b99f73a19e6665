import QtQuick
import QtQuick.Templates as T
import Zentrill

// Turns the Safety Shield on and off.
T.Switch {
    id: control

    implicitWidth: implicitIndicatorWidth + spacing + implicitContentWidth
    implicitHeight: 22
    spacing: 10
    text: qsTr("Safety Shield")
    font: Typography.control
    hoverEnabled: true
    Accessible.name: qsTr("Safety Shield, retains recognized credentials and uncertain data when on")

    indicator: Rectangle {
        x: 0
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 36
        implicitHeight: 20
        radius: 10
        color: control.checked ? WarmPalette.copper : WarmPalette.faint(WarmPalette.tertiary, 0.35)

        Rectangle {
            x: control.checked ? parent.width - width - 2 : 2
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: control.checked ? WarmPalette.canvas : WarmPalette.paper

            Behavior on x {
                NumberAnimation {
                    duration: 110
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            around: 10
            visible: control.activeFocus && KeyboardUse.current
        }
    }

    contentItem: PlainText {
        leftPadding: control.indicator.width + control.spacing
        text: control.text
        font: control.font
        color: WarmPalette.paper
        verticalAlignment: Text.AlignVCenter
    }
}
