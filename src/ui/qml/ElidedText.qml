import QtQuick
import Zentrill

// One line that ends in an ellipsis where it does not fit; the whole of it is in the tooltip.
Text {
    id: line

    textFormat: Text.PlainText
    elide: Text.ElideRight
    maximumLineCount: 1
    verticalAlignment: Text.AlignVCenter

    HoverHandler {
        id: hover

        enabled: line.truncated
    }

    TipLoader {
        text: line.text
        wanted: hover.hovered && line.truncated
    }
}
