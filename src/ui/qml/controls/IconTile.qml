import QtQuick
import Zentrill

Rectangle {
    id: tile

    required property string iconName
    property color tint: WarmPalette.copper

    implicitWidth: 44
    implicitHeight: 44
    radius: 9
    color: WarmPalette.row
    border.width: 1
    border.color: WarmPalette.faint(WarmPalette.tertiary, 0.16)

    Icon {
        anchors.centerIn: parent
        name: tile.iconName
        size: 18
        tint: tile.tint
    }
}
