import QtQuick
import Zentrill

// Twelve fading spokes in a 14 × 14 frame; it turns in steps, so that it costs a repaint only ten times a second.
Item {
    id: spinner

    property bool running: true
    property color tint: WarmPalette.secondary

    implicitWidth: 14
    implicitHeight: 14
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("In progress")

    Item {
        id: wheel

        anchors.fill: parent

        Repeater {
            model: 10

            Rectangle {
                required property int index

                x: spinner.width / 2 - width / 2
                y: 0
                width: 1.6
                height: 4
                radius: 0.8
                antialiasing: true
                color: spinner.tint
                opacity: 0.15 + 0.85 * index / 9
                transform: Rotation {
                    origin.x: 0.8
                    origin.y: spinner.height / 2
                    angle: index * 36
                }
            }
        }
    }

    Timer {
        running: spinner.running && spinner.visible
        interval: 100
        repeat: true
        onTriggered: wheel.rotation = (wheel.rotation + 36) % 360
    }
}
