import QtQuick
import QtQuick.Templates as T
import Zentrill

T.ScrollBar {
    id: control

    implicitWidth: 10
    implicitHeight: 10
    padding: 2
    minimumSize: 0.06
    visible: size < 1
    hoverEnabled: true

    contentItem: Rectangle {
        radius: 3
        color: WarmPalette.faint(WarmPalette.tertiary, control.pressed ? 0.75 : control.hovered ? 0.6 : 0.32)
    }
}
