import QtQuick

// A text that stands for itself, for assistive tools as well. Whatever it holds is shown as it is, never as markup.
Text {
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
