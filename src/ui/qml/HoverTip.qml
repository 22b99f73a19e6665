import QtQuick
import QtQuick.Templates as T
import Zentrill

T.ToolTip {
    id: tip

    x: Math.round((parent.width - implicitWidth) / 2)
    y: parent.height + 6
    implicitWidth: Math.min(label.implicitWidth + leftPadding + rightPadding, 440)
    implicitHeight: label.height + topPadding + bottomPadding
    margins: 8
    padding: 6
    leftPadding: 10
    rightPadding: 10
    delay: 500
    timeout: 12000
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: Text {
        id: label

        width: tip.availableWidth
        text: tip.text
        textFormat: Text.PlainText
        font: Typography.caption
        color: WarmPalette.paper
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: 6
        color: WarmPalette.selected
        border.width: 1
        border.color: WarmPalette.faint(WarmPalette.tertiary, 0.4)
    }
}
