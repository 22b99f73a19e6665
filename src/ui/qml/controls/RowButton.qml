import QtQuick
import Zentrill

// A button at the end of a `RecordRow`. Unless it says otherwise, it removes what the row stands for.
ActionButton {
    // Whether the row is the one of its list that Tab leads to.
    required property bool current

    kind: "danger"
    font: Typography.rowControl
    iconName: "trash.fill"
    iconSize: 12
    activeFocusOnTab: current || activeFocus
}
