import QtQuick
import QtQuick.Window

// One of the program's own glyphs, tinted.
Image {
    id: icon

    required property string name
    required property color tint
    property real size: 16

    // The provider draws at the pixels of the screen, not at the size of the item.
    readonly property int pixels: Math.ceil(size * Screen.devicePixelRatio)

    width: size
    height: size
    sourceSize.width: pixels
    sourceSize.height: pixels
    source: name === "" ? "" : "image://icon/" + name + "/" + String(tint).slice(1)
    fillMode: Image.PreserveAspectFit
    smooth: true
    Accessible.ignored: true
}
