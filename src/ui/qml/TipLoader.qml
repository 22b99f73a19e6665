import QtQuick

// Brings the tooltip of what it lies in when that is wanted; before, not even the tooltip's file is read.
Loader {
    id: loader

    required property string text
    required property bool wanted

    anchors.fill: parent
    onWantedChanged: if (wanted)
        setSource("HoverTip.qml", {
            text: Qt.binding(() => loader.text),
            visible: true
        });
    else
        source = ""
}
