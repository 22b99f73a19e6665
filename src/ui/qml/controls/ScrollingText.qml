import QtQuick
import QtQuick.Templates as T
import Zentrill

// A text that scrolls where it does not fit: with the wheel, and with the keyboard, for which it is a tab stop
// then. Its scroll bar stands beside it.
Item {
    id: area

    property alias text: label.text
    property alias font: label.font
    property alias color: label.color
    property alias lineHeight: label.lineHeight
    property alias horizontalAlignment: label.horizontalAlignment

    readonly property bool scrolls: implicitHeight > height

    function scrollTo(y: real) {
        view.contentY = Math.round(Math.max(0, Math.min(view.contentHeight - view.height, y)));
    }

    // Takes the keys that scroll, also those that were pressed elsewhere in what this text is part of.
    function takeKey(event: var) {
        const page = Math.max(20, view.height - 20);
        switch (scrolls ? event.key : Qt.Key_unknown) {
        case Qt.Key_Up:
            scrollTo(view.contentY - 20);
            break;
        case Qt.Key_Down:
            scrollTo(view.contentY + 20);
            break;
        case Qt.Key_PageUp:
            scrollTo(view.contentY - page);
            break;
        case Qt.Key_PageDown:
            scrollTo(view.contentY + page);
            break;
        case Qt.Key_Home:
            scrollTo(0);
            break;
        case Qt.Key_End:
            scrollTo(view.contentHeight);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    // As wide as the text is without being broken, as high as it is when it is.
    implicitWidth: Math.ceil(label.implicitWidth)
    implicitHeight: label.implicitHeight

    // What has the focus cannot cease to be a tab stop.
    activeFocusOnTab: scrolls || activeFocus
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.focusable: scrolls
    Accessible.focused: activeFocus

    Keys.onPressed: event => takeKey(event)

    Flickable {
        id: view

        anchors.fill: parent
        contentHeight: label.height
        boundsBehavior: Flickable.StopAtBounds
        pixelAligned: true
        interactive: area.scrolls
        clip: area.scrolls

        PlainText {
            id: label

            width: view.width
            wrapMode: Text.Wrap
        }

        T.ScrollBar.vertical: ThinScrollBar {
            parent: area
            x: area.width + 6
            height: area.height
        }
    }

    FocusRing {
        anchors.margins: -6
        visible: area.activeFocus
    }
}
