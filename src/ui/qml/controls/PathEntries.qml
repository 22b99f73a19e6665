import QtQuick
import Zentrill

// What the menu of a row offers for its path.
QtObject {
    id: offered

    required property PathActions paths

    // For `ContextMenu`; `path` is in bytes, and where there are none there is nothing to offer. It is never null, for
    // the length of which the engine has no answer.
    function of(path: var): var {
        if (path.byteLength === 0)
            return [];
        paths.look();
        return [
            {
                text: qsTr("Copy Path"),
                enabled: true,
                act: () => offered.paths.copy(path)
            },
            {
                text: qsTr("Show in Folder"),
                // Known a moment after it was asked.
                enabled: () => offered.paths.canShow,
                act: () => offered.paths.showInFolder(path)
            }
        ];
    }
}
