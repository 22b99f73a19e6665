import QtQuick
import Zentrill

// The ground of a list row.
Rectangle {
    property bool hovered: false
    property bool chosen: false
    property bool focused: false

    radius: 9
    color: chosen ? WarmPalette.selected : WarmPalette.row

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
