import QtQuick
import QtQuick.Templates as T
import Zentrill

T.AbstractButton {
    id: item

    required property string title
    required property string iconName
    required property bool isSelected

    implicitHeight: 36
    leftPadding: 12
    rightPadding: 12
    text: title
    hoverEnabled: true
    focusPolicy: isSelected ? Qt.StrongFocus : Qt.ClickFocus
    activeFocusOnTab: isSelected
    Accessible.role: Accessible.PageTab
    Accessible.name: title
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: if (enabled) clicked()

    background: Rectangle {
        radius: 8
        color: item.isSelected ? WarmPalette.selected : item.hovered ? WarmPalette.row : "transparent"

        FocusRing {
            around: 8
            visible: item.visualFocus
        }
    }

    contentItem: Item {
        Icon {
            id: glyph

            anchors.verticalCenter: parent.verticalCenter
            name: item.iconName
            size: 17
            tint: item.isSelected ? WarmPalette.copper : WarmPalette.tertiary
        }

        Text {
            anchors.left: glyph.right
            anchors.leftMargin: 11
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: item.title
            textFormat: Text.PlainText
            font: Typography.control
            elide: Text.ElideRight
            color: item.isSelected ? WarmPalette.paper : WarmPalette.secondary
        }
    }
}
