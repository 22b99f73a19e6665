import QtQuick
import Zentrill

// A push button: "quiet" on a faint plate, "primary", "copper" and "destructive" filled, "danger" on a tinted
// plate.
Pressable {
    id: control

    property string kind: "quiet"
    property string iconName
    property real iconSize: 13
    property real sidePadding: 12
    property font font: Typography.control
    property bool spinning: false
    property string tip

    // However the focus came here, it is marked while the keyboard is used.
    readonly property bool visualFocus: activeFocus && KeyboardUse.current
    readonly property bool filled: kind === "primary" || kind === "copper" || kind === "destructive"
    readonly property color accent: kind === "primary" ? WarmPalette.action
                                  : kind === "copper" ? WarmPalette.copper
                                  : kind === "danger" || kind === "destructive" ? WarmPalette.danger : WarmPalette.paper
    // What cannot be pressed is dimmed: the primary one to grey, the others within their colour.
    readonly property color restingFill: kind === "primary" ? WarmPalette.tertiary : WarmPalette.faint(accent, 0.45)
    readonly property color ink: filled ? WarmPalette.canvas : enabled ? accent : WarmPalette.tertiary

    implicitWidth: Math.ceil(line.implicitWidth + 2 * sidePadding)
    implicitHeight: 30
    opacity: enabled || filled ? 1 : 0.55
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.pressed: down
    Accessible.onPressAction: click()

    Rectangle {
        anchors.fill: parent
        radius: 7
        color: control.filled ? (control.enabled ? control.accent : control.restingFill)
             : WarmPalette.faint(control.accent, control.kind === "danger" ? 0.25 : 0.08)
        border.width: control.filled ? 0 : 1
        border.color: WarmPalette.faint(control.accent, 0.35)
    }

    // Lightens under the pointer, darkens under the finger.
    Rectangle {
        anchors.fill: parent
        radius: 7
        visible: control.enabled && (control.hovered || control.down)
        color: control.down ? WarmPalette.faint(WarmPalette.canvas, 0.25) : WarmPalette.faint(WarmPalette.paper, 0.1)
    }

    FocusRing {
        visible: control.visualFocus
    }

    Row {
        id: line

        anchors.centerIn: parent
        spacing: 7

        BusySpinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: control.spinning
            running: control.spinning
            tint: control.ink
        }

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: !control.spinning && control.iconName !== ""
            name: control.iconName
            size: control.iconSize
            tint: control.ink
        }

        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            font: control.font
            color: control.ink
        }
    }

    TipLoader {
        text: control.tip
        wanted: control.tip !== "" && !control.down && (control.hovered || control.visualFocus)
    }
}
