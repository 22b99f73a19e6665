import QtQuick
import QtQuick.Window

// Lets a part of the background move the window. It lies below the controls, which take their own presses.
MouseArea {
    acceptedButtons: Qt.LeftButton
    onPressed: mouse => {
        if (Window.window)
            Window.window.startSystemMove();
        mouse.accepted = false;
    }
}
