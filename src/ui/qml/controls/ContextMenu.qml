import QtQuick
import Zentrill

// A menu at a place of the window: `entries` are objects with a text, whether they are enabled (or a function that
// tells it, where that can change), and a function "act". Anything that is pressed elsewhere closes it, and the focus returns to where it was.
FocusScope {
    id: menu

    required property var entries
    // Where it was asked for, in the window.
    required property point place

    property Item before

    signal closed

    function close() {
        if (before && before.visible && before.enabled)
            before.forceActiveFocus(Qt.PopupFocusReason);
        closed();
    }

    function isEnabled(entry: var): bool {
        return typeof entry.enabled === "function" ? entry.enabled() : entry.enabled;
    }

    function choose(entry: var) {
        close();
        entry.act();
    }

    function step(by: int) {
        const last = lines.count - 1;
        let next = lines.at + by;
        while (next >= 0 && next <= last && !isEnabled(entries[next]))
            next += by;
        if (next >= 0 && next <= last) {
            lines.at = next;
            lines.itemAt(next).forceActiveFocus(Qt.OtherFocusReason);
        }
    }

    anchors.fill: parent

    Component.onCompleted: {
        before = Window.activeFocusItem;
        plate.forceActiveFocus(Qt.PopupFocusReason);
        step(1);
    }

    Keys.onPressed: event => {
        event.accepted = true;
        if (event.key === Qt.Key_Up)
            step(-1);
        else if (event.key === Qt.Key_Down)
            step(1);
        else if ([Qt.Key_Escape, Qt.Key_Tab, Qt.Key_Backtab, Qt.Key_Menu].includes(event.key))
            close();
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: menu.close()
        onWheel: wheel => menu.close()
    }

    Rectangle {
        id: plate

        x: Math.max(8, Math.min(menu.place.x, menu.width - width - 8))
        y: menu.place.y + height + 8 <= menu.height ? menu.place.y : Math.max(8, menu.place.y - height)
        width: column.width + 10
        height: column.height + 10
        radius: 8
        color: WarmPalette.selected
        border.width: 1
        border.color: WarmPalette.faint(WarmPalette.tertiary, 0.4)
        Accessible.role: Accessible.PopupMenu
        Accessible.name: qsTr("Menu")

        Column {
            id: column

            x: 5
            y: 5

            Repeater {
                id: lines

                property int at: -1

                model: menu.entries

                Pressable {
                    id: line

                    required property int index
                    required property var modelData

                    width: Math.max(150, label.implicitWidth + 28)
                    height: 28
                    enabled: menu.isEnabled(modelData)
                    text: modelData.text
                    Accessible.role: Accessible.MenuItem
                    Accessible.name: text
                    onClicked: menu.choose(modelData)
                    onHoveredChanged: if (hovered) {
                        lines.at = index;
                        forceActiveFocus(Qt.MouseFocusReason);
                    }

                    Rectangle {
                        anchors.fill: parent
                        radius: 5
                        visible: line.activeFocus
                        color: WarmPalette.faint(WarmPalette.copper, line.down ? 0.4 : 0.25)
                    }

                    PlainText {
                        id: label

                        anchors.verticalCenter: parent.verticalCenter
                        x: 14
                        text: line.text
                        font: Typography.control
                        color: line.enabled ? WarmPalette.paper : WarmPalette.tertiary
                        opacity: line.enabled ? 1 : 0.6
                    }
                }
            }
        }
    }
}
