import QtQuick
import Zentrill

// A short word on a small plate of its own.
Rectangle {
    id: tag

    required property string text
    property color textColor: WarmPalette.secondary
    property font font: Typography.tag

    implicitWidth: label.implicitWidth + 12
    implicitHeight: label.implicitHeight + 4
    radius: 4
    color: WarmPalette.row

    ElidedText {
        id: label

        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        text: tag.text
        font: tag.font
        color: tag.textColor
    }
}
