import QtQuick
import Zentrill

BusyWheel {
    tint: WarmPalette.secondary
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("In progress")
}
