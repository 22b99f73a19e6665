import QtQuick
import Zentrill

// Drawn just outside of what has the keyboard's focus.
Rectangle {
    property real around: 7

    anchors.fill: parent
    anchors.margins: -3
    radius: around + 3
    color: "transparent"
    border.width: 2
    border.color: WarmPalette.faint(WarmPalette.copper, 0.9)
}
