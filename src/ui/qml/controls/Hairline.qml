import QtQuick
import Zentrill

Rectangle {
    color: WarmPalette.faint(WarmPalette.tertiary, 0.24)
    implicitHeight: 1
    implicitWidth: 1
}
