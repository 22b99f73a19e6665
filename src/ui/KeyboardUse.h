#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Whether the person is using the keyboard. Only then the item with the focus is marked, however it got the
/// focus.
class KeyboardUse : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool current READ isCurrent NOTIFY changed FINAL)

public:
    using QObject::QObject;

    /// Whether the last input was a key and not a press of the pointer.
    [[nodiscard]] bool isCurrent() const { return current_; }

    void setCurrent(bool current) {
        if (current != current_) {
            current_ = current;
            Q_EMIT changed();
        }
    }

Q_SIGNALS:
    void changed();

private:
    bool current_ = false;
};

} // namespace zentrill
