import QtQuick

// The text of something that assistive tools know by a name of its own, shown as it is, never as markup.
Text {
    textFormat: Text.PlainText
}
