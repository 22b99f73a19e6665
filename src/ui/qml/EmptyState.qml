import QtQuick
import Zentrill

// What a pane says when it has nothing to list.
Column {
    id: state

    required property string iconName
    required property string heading
    property string detail
    property color tint: WarmPalette.tertiary

    width: Math.min(parent.width - 80, 520)
    spacing: 8
    Accessible.role: Accessible.StaticText
    Accessible.name: heading
    Accessible.description: detail

    Icon {
        anchors.horizontalCenter: parent.horizontalCenter
        name: state.iconName
        size: 44
        tint: state.tint
    }

    Item {
        width: 1
        height: 4
    }

    Text {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: state.heading
        textFormat: Text.PlainText
        font: Typography.name
        color: WarmPalette.paper
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    Text {
        width: parent.width
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        text: state.detail
        textFormat: Text.PlainText
        font: Typography.detail
        color: WarmPalette.secondary
        wrapMode: Text.Wrap
        lineHeight: 1.25
        Accessible.ignored: true
    }
}
