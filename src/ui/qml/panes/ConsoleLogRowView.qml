import QtQuick
import Zentrill

// One line of text behind its mark, such as the prompt mark of the activity log.
Item {
    id: row

    required property string entry
    required property string mark
    // Whether it stands for lines that are shown below it while it is open.
    required property bool isFold
    required property bool isOpen
    required property int selectionStart
    required property int selectionEnd
    property alias font: line.font
    property alias color: line.color
    property alias lineHeight: spacing.proportion
    property real spaceAbove: 0
    property real indent: 0

    signal toggled
    // The keyboard has led here.
    signal reached

    // The character nearest to a point of this row.
    function positionAt(x: real, y: real): int {
        return line.positionAt(x - line.x, y - line.y);
    }

    implicitHeight: spaceAbove + line.implicitHeight + 4
    Accessible.role: Accessible.ListItem
    Accessible.name: entry
    // The button in it speaks for a fold.
    Accessible.ignored: isFold

    // Not with the text's own signal, which a selection gives as well.
    onEntryChanged: Qt.callLater(line.showSelection)
    onSelectionStartChanged: line.showSelection()
    onSelectionEndChanged: line.showSelection()

    // A row that waits to be used again must not be found by an assistive tool.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    PlainText {
        y: line.y
        text: row.mark
        font: Typography.console
        color: WarmPalette.copper
    }

    TextEdit {
        id: line

        function showSelection() {
            const to = Math.min(row.selectionEnd, length);
            if (row.selectionStart < to)
                select(row.selectionStart, to);
            else
                deselect();
        }

        x: row.indent + (row.mark === "" ? 0 : 18)
        y: row.spaceAbove + 2
        width: parent.width - x
        readOnly: true
        activeFocusOnPress: false
        persistentSelection: true
        text: row.entry
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        selectionColor: WarmPalette.action
        selectedTextColor: WarmPalette.canvas
        Accessible.ignored: true

        Component.onCompleted: showSelection()

        LineSpacing {
            id: spacing

            document: line.textDocument
        }
    }

    // The whole row is one button; clicks on it are those of the list, in which a press may begin a selection.
    Loader {
        anchors.fill: parent
        active: row.isFold

        sourceComponent: Pressable {
            id: fold

            text: row.entry
            Accessible.role: Accessible.Button
            Accessible.name: row.entry
            Accessible.description: row.isOpen ? qsTr("Unfolded") : qsTr("Folded")
            Accessible.onPressAction: click()
            onClicked: row.toggled()
            onActiveFocusChanged: {
                if (activeFocus)
                    row.reached();
                else
                    focus = false; // The list has the focus again when it comes back.
            }

            FocusRing {
                visible: fold.activeFocus && KeyboardUse.current
            }
        }
    }
}
