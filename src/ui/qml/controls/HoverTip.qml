import QtQuick
import Zentrill

// A tooltip: below what it lies in or, where there is more room, above, and never over it. Its plate lies on top
// of everything else in the window and takes neither clicks nor the pointer.
Item {
    id: tip

    required property string text
    // Begins where the text begins that it completes, instead of standing in the middle.
    required property bool completes

    readonly property Item window: Window.contentItem
    readonly property real margin: 8
    readonly property real gap: 6

    property bool shown: false
    // Where this lies in the window, looked up when the plate is shown: it moves without telling.
    property point place

    readonly property real above: place.y - gap - margin
    readonly property real below: window.height - place.y - height - gap - margin

    // A text's own implicit width is the sum of its lines.
    readonly property real widestLine: Math.max(...text.split("\n").map(line => metrics.advanceWidth(line)))

    FontMetrics {
        id: metrics

        font: label.font
    }

    Timer {
        running: true
        interval: 500
        onTriggered: {
            // One at a time: the pointer may rest on one thing while the keyboard leads to another.
            for (let index = 0; index < tip.window.children.length; ++index) {
                const other = tip.window.children[index] as Plate;
                if (other)
                    other.withdraw();
            }
            tip.place = tip.mapToItem(tip.window, 0, 0);
            tip.shown = true;
        }
    }

    component Plate: Rectangle {
        signal withdraw
    }

    Plate {
        id: plate

        readonly property real wantedX: tip.place.x + (tip.completes ? -label.x : Math.round((tip.width - width) / 2))

        parent: tip.window
        z: 1
        visible: tip.shown
        x: Math.max(tip.margin, Math.min(wantedX, tip.window.width - tip.margin - width))
        y: height <= tip.below || tip.below >= tip.above ? tip.place.y + tip.height + tip.gap
                                                         : tip.place.y - tip.gap - height
        width: label.width + 2 * label.x
        height: label.height + 2 * label.y
        radius: 6
        color: WarmPalette.selected
        border.width: 1
        border.color: WarmPalette.faint(WarmPalette.tertiary, 0.4)
        Accessible.role: Accessible.ToolTip
        Accessible.name: tip.text
        onWithdraw: tip.shown = false

        PlainText {
            id: label

            x: 10
            y: 6
            width: Math.min(Math.ceil(tip.widestLine) + 1, 420, tip.window.width - 2 * (tip.margin + x))
            text: tip.text
            font: Typography.caption
            color: WarmPalette.paper
            wrapMode: Text.Wrap
            lineHeightMode: Text.FixedHeight
            lineHeight: 15
            elide: Text.ElideRight
            maximumLineCount: Math.max(1, Math.floor((Math.max(tip.above, tip.below) - 2 * y) / lineHeight))
        }
    }
}
