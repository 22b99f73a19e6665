import QtQuick

// Brings the tooltip of what it lies in when that is wanted; before, not even the tooltip's file is read.
Loader {
    id: loader

    required property string text
    required property bool wanted
    property bool completes: false

    // It goes with what it belongs to, and what a modal covers says nothing.
    readonly property bool due: wanted && visible && enabled

    anchors.fill: parent
    onDueChanged: if (due)
        setSource("HoverTip.qml", {
            text: Qt.binding(() => loader.text),
            completes: loader.completes
        });
    else
        source = ""
}
