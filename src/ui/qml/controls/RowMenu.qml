import QtQuick

// The menu of a row of a list, over the whole window, and gone with the list.
Loader {
    id: menu

    // The list, and its model: what was asked for a row goes when the rows change.
    required property Item owner
    required property QtObject model

    readonly property bool fits: owner.visible && owner.enabled

    // `entries` as ContextMenu has them, `place` a point of the window.
    function open(entries: var, place: point) {
        setSource("ContextMenu.qml", {
            entries: entries,
            place: place
        });
    }

    anchors.fill: parent
    z: 1
    onFitsChanged: if (!fits)
        source = ""

    Connections {
        target: menu.item ? menu.model : null
        ignoreUnknownSignals: true

        function onRowsInserted() {
            menu.item.close();
        }

        function onRowsRemoved() {
            menu.item.close();
        }
    }

    Connections {
        target: menu.item
        ignoreUnknownSignals: true

        function onClosed() {
            menu.source = "";
        }
    }
}
