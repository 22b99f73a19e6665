import QtQuick
import Zentrill

// One line that ends in an ellipsis where it does not fit; the whole of it is in the tooltip.
Text {
    id: line

    // Whether the keyboard has led to what this line stands for.
    property bool reached: false

    // Whether the pointer rests on a line that does not fit.
    readonly property bool told: truncated && hover.hovered

    textFormat: Text.PlainText
    elide: Text.ElideRight
    maximumLineCount: 1
    verticalAlignment: Text.AlignVCenter

    HoverHandler {
        id: hover

        enabled: line.truncated
    }

    PointHandler {
        id: press

        enabled: line.truncated
        acceptedButtons: Qt.AllButtons
    }

    TipLoader {
        text: line.text
        wanted: line.truncated && !press.active && (hover.hovered || line.reached)
        completes: true
    }
}
