import QtQuick
import Zentrill

// One image, known by its exact ID.
RecordRow {
    id: row

    required property string shortId
    required property string size
    required property string usageText
    required property bool inUse
    required property bool actionsEnabled

    signal removeRequested

    iconName: "square.stack.3d.up.fill"
    endSpacing: 14
    Accessible.description: shortId + ", " + size + ", " + usageText

    secondLine: Row {
        spacing: 12

        PlainText {
            text: row.shortId
            font: Typography.caption
            color: WarmPalette.tertiary
        }

        PlainText {
            text: row.size
            font: Typography.caption
            color: WarmPalette.secondary
        }
    }

    Tag {
        anchors.verticalCenter: parent.verticalCenter
        text: row.usageText
        textColor: row.inUse ? WarmPalette.copper : WarmPalette.secondary
    }

    RowButton {
        anchors.verticalCenter: parent.verticalCenter
        current: row.current
        text: qsTr("Remove")
        tip: qsTr("Remove this exact image ID without force.")
        enabled: row.actionsEnabled
        Accessible.name: qsTr("Remove %1").arg(row.title)
        onClicked: row.removeRequested()
    }
}
