import QtQuick
import Zentrill

Rectangle {
    id: sidebar

    required property ContentViewState viewState

    // The row of the pane that is shown.
    readonly property Item selectedItem: panes.itemAt(viewState.selectedRow)

    color: WarmPalette.sidebar

    WindowMover {
        anchors.fill: parent
    }

    Column {
        id: brand

        anchors.left: parent.left
        anchors.leftMargin: 24
        anchors.top: parent.top
        anchors.topMargin: 26
        spacing: 4

        Label {
            text: "Zentrill"
            font: Typography.brand
            color: WarmPalette.paper
            Accessible.role: Accessible.Heading

            HoverHandler {
                id: brandHover
            }

            TipLoader {
                text: qsTr("Version %1").arg(Qt.application.version)
                wanted: brandHover.hovered
            }
        }

        Label {
            text: qsTr("SYSTEM UTILITY")
            font: Typography.overline
            color: WarmPalette.secondary
        }
    }

    Column {
        id: items

        function step(by: int) {
            const row = Math.max(0, Math.min(panes.count - 1, sidebar.viewState.selectedRow + by));
            // In this order: only the chosen one is a tab stop, and what has the focus has to stay one.
            panes.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
            sidebar.viewState.selectRow(row);
        }

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: brand.bottom
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        anchors.topMargin: 26
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Panes")

        // The panes are one tab stop; the arrow keys move between them.
        Keys.onUpPressed: step(-1)
        Keys.onDownPressed: step(1)

        Repeater {
            id: panes

            model: [
                {
                    title: qsTr("Applications"),
                    icon: "app.badge.fill",
                    tab: "apps"
                },
                {
                    title: qsTr("Local Models"),
                    icon: "cube.box.fill",
                    tab: "models"
                },
                {
                    title: qsTr("Docker"),
                    icon: "shippingbox.fill",
                    tab: "containers"
                },
                {
                    title: qsTr("Activity Console"),
                    icon: "terminal.fill",
                    tab: "console"
                }
            ]

            SidebarItem {
                required property var modelData
                required property int index

                width: items.width
                title: modelData.title
                iconName: modelData.icon
                keys: Shortcuts.paneKeys(index)
                isSelected: sidebar.viewState.selectedTab === modelData.tab
                onClicked: sidebar.viewState.selectedTab = modelData.tab
            }
        }
    }

    Pressable {
        id: selfUninstall

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 12
        implicitHeight: 36
        text: qsTr("Uninstall Zentrill")
        enabled: sidebar.viewState.acceptsRequests
        opacity: enabled ? 1 : 0.6
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.pressed: down
        onClicked: sidebar.viewState.requestSelfUninstall()
        Accessible.onPressAction: click()

        Rectangle {
            anchors.fill: parent
            anchors.margins: 0.5
            radius: 8
            color: WarmPalette.faint(WarmPalette.danger, selfUninstall.down ? 0.16 : selfUninstall.hovered ? 0.12 : 0.07)
            border.width: 1
            border.color: WarmPalette.faint(WarmPalette.danger, 0.4)
        }

        FocusRing {
            around: 8
            visible: selfUninstall.activeFocus && KeyboardUse.current
        }

        Icon {
            id: bin

            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "trash.slash.fill"
            size: 16
            tint: WarmPalette.danger
        }

        PlainText {
            anchors.left: bin.right
            anchors.leftMargin: 11
            anchors.verticalCenter: parent.verticalCenter
            text: selfUninstall.text
            font: Typography.control
            color: WarmPalette.danger
        }
    }
}
