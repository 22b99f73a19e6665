import QtQuick
import Zentrill

// The ground of a list row. An outlined one leaves the ground to the tile and the tags that lie on it.
Rectangle {
    property bool outlined: false
    property bool hovered: false
    property bool chosen: false
    property bool focused: false

    radius: 9
    color: chosen ? WarmPalette.selected : outlined ? WarmPalette.canvas : WarmPalette.row
    border.width: outlined ? 1 : 0
    border.color: WarmPalette.faint(WarmPalette.tertiary, 0.16)

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        visible: parent.hovered
        color: WarmPalette.faint(WarmPalette.paper, 0.035)
    }

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        visible: parent.focused
        color: "transparent"
        border.width: 2
        border.color: WarmPalette.faint(WarmPalette.copper, 0.9)
    }
}
