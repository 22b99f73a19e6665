import QtQuick
import Zentrill

// The bezelled field in which the code is typed, digit by digit.
FocusScope {
    id: field

    property alias text: view.text

    signal change
    signal accepted

    // Takes over a text from outside.
    function show(text) {
        view.setText(text);
    }

    implicitWidth: 210
    implicitHeight: 30

    Rectangle {
        anchors.fill: parent
        radius: 6
        color: WarmPalette.canvas
        border.width: 1
        border.color: WarmPalette.faint(WarmPalette.tertiary, 0.6)
    }

    FocusRing {
        around: 6
        visible: view.activeFocus
    }

    ManualCodeTextView {
        id: view

        anchors.fill: parent
        anchors.margins: 4
        focus: true
        Accessible.role: Accessible.EditableText
        Accessible.name: qsTr("Type the eight digit confirmation code manually")
        Accessible.description: qsTr("Paste and drag-and-drop are disabled.")
        Accessible.focusable: true
        Accessible.focused: activeFocus
        onTextChanged: field.change()
        onAccepted: field.accepted()
        onSelectionChanged: digits.showSelection()

        // Draws the digits, the caret and the selection; what is typed never goes through it.
        TextInput {
            id: digits

            function showSelection() {
                if (view.selectionStart === view.selectionEnd) {
                    deselect();
                    cursorPosition = view.cursorPosition;
                } else if (view.cursorPosition === view.selectionEnd)
                    select(view.selectionStart, view.selectionEnd);
                else
                    select(view.selectionEnd, view.selectionStart);
            }

            anchors.fill: parent
            readOnly: true
            activeFocusOnPress: false
            activeFocusOnTab: false
            selectByMouse: false
            persistentSelection: true
            cursorVisible: view.activeFocus
            text: view.text
            font: Typography.codeField
            color: WarmPalette.paper
            selectionColor: WarmPalette.action
            selectedTextColor: WarmPalette.canvas
            horizontalAlignment: TextInput.AlignHCenter
            verticalAlignment: TextInput.AlignVCenter
            Accessible.ignored: true
            onTextChanged: showSelection()

            cursorDelegate: Rectangle {
                width: 2
                visible: digits.cursorVisible
                color: WarmPalette.copper
            }
        }

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.LeftButton
            cursorShape: Qt.IBeamCursor
            preventStealing: true
            onPressed: mouse => {
                view.forceActiveFocus(Qt.MouseFocusReason);
                view.moveCursor(digits.positionAt(mouse.x), mouse.modifiers & Qt.ShiftModifier);
            }
            onPositionChanged: mouse => view.moveCursor(digits.positionAt(mouse.x), true)
            onDoubleClicked: view.selectAll()
        }
    }
}
