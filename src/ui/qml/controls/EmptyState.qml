import QtQuick
import Zentrill

// What a pane says when it has nothing to list.
Column {
    id: state

    required property string iconName
    required property string heading
    property string detail
    property color tint: WarmPalette.tertiary

    // A tool's answer of several lines is read from the left, and may be longer than the pane is high.
    readonly property bool severalLines: detail.includes("\n")

    width: Math.min(parent.width - 80, 520)
    spacing: 20
    Accessible.role: Accessible.StaticText
    Accessible.name: heading
    Accessible.description: detail

    Icon {
        id: sign

        anchors.horizontalCenter: parent.horizontalCenter
        name: state.iconName
        size: 44
        tint: state.tint
    }

    Column {
        width: parent.width
        spacing: 8

        PlainText {
            id: title

            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: state.heading
            font: Typography.name
            color: WarmPalette.paper
            wrapMode: Text.Wrap
        }

        ScrollingText {
            id: words

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, implicitWidth)
            height: Math.min(implicitHeight, state.parent.height - sign.height - title.height - 76)
            visible: text !== ""
            horizontalAlignment: state.severalLines ? Text.AlignLeft : Text.AlignHCenter
            text: state.detail
            font: Typography.detail
            color: WarmPalette.secondary
            lineHeight: 1.25
            // Said with the heading.
            Accessible.ignored: !words.scrolls
        }
    }
}
