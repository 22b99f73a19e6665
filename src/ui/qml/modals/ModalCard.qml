import QtQuick
import Zentrill

// The ground of a modal: a card with a hairline and a soft shadow. The shadow is a stack of faint rounded
// frames, which the software renderer draws without a layer.
Rectangle {
    id: card

    property real hairline: 0.22

    radius: 14
    color: WarmPalette.row
    border.width: 1
    border.color: WarmPalette.faint(WarmPalette.tertiary, hairline)

    Repeater {
        model: 12

        Rectangle {
            required property int index

            z: -1
            x: -index * 2
            y: 6 - index * 2
            width: card.width + index * 4
            height: card.height + index * 4
            radius: card.radius + index * 2
            color: Qt.rgba(0, 0, 0, 0.035)
        }
    }
}
