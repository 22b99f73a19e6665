import QtQuick
import Zentrill

// One line to type into what is searched for. Escape leaves it.
FocusScope {
    id: field

    required property SearchState search
    property string name

    signal abandoned
    // The keys that go on to what is found: down or Return, and Return with Shift.
    signal next
    signal previous

    function selectAll() {
        input.selectAll();
    }

    implicitWidth: 180
    implicitHeight: 30

    Keys.onEscapePressed: abandoned()
    Keys.onDownPressed: next()
    Keys.onReturnPressed: event => event.modifiers & Qt.ShiftModifier ? previous() : next()
    Keys.onEnterPressed: event => event.modifiers & Qt.ShiftModifier ? previous() : next()

    Rectangle {
        anchors.fill: parent
        radius: 7
        color: WarmPalette.canvas
        border.width: 1
        border.color: input.activeFocus ? WarmPalette.copper : WarmPalette.faint(WarmPalette.paper, 0.35)
    }

    PlainText {
        anchors.left: input.left
        anchors.verticalCenter: parent.verticalCenter
        visible: input.text === "" && input.preeditText === ""
        text: qsTr("Search")
        font: Typography.body
        color: WarmPalette.tertiary
    }

    TextInput {
        id: input

        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        verticalAlignment: TextInput.AlignVCenter
        focus: true
        activeFocusOnTab: true
        clip: true
        text: field.search.needle
        selectByMouse: true
        font: Typography.body
        color: WarmPalette.paper
        selectionColor: WarmPalette.action
        selectedTextColor: WarmPalette.canvas
        Accessible.role: Accessible.EditableText
        Accessible.name: field.name
        Accessible.focusable: true
        onTextChanged: field.search.needle = text
    }
}
