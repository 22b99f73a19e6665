import QtQuick
import Zentrill

Pressable {
    id: item

    required property string title
    required property string iconName
    required property bool isSelected
    // The shortcut to it.
    required property string keys

    readonly property bool visualFocus: activeFocus && KeyboardUse.current

    implicitHeight: 36
    text: title
    // What has the focus cannot cease to be a tab stop.
    activeFocusOnTab: isSelected || activeFocus
    Accessible.role: Accessible.PageTab
    Accessible.name: title
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: click()

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: item.isSelected ? WarmPalette.selected : item.hovered ? WarmPalette.row : "transparent"

        FocusRing {
            around: 8
            visible: item.visualFocus
        }
    }

    Icon {
        id: glyph

        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        name: item.iconName
        size: 17
        tint: item.isSelected ? WarmPalette.copper : WarmPalette.tertiary
    }

    PlainText {
        anchors.left: glyph.right
        anchors.leftMargin: 11
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: item.title
        font: Typography.control
        elide: Text.ElideRight
        color: item.isSelected ? WarmPalette.paper : WarmPalette.secondary
    }

    TipLoader {
        text: item.keys
        wanted: item.hovered && !item.down
    }
}
