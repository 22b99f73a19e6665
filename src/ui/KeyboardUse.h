#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Whether the person uses the keyboard just now: only then is it worth marking where the focus is. However
/// the focus came there, a mark stands on what has it.
class KeyboardUse : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool current READ isCurrent NOTIFY changed FINAL)

public:
    using QObject::QObject;

    /// Whether the last input was a key rather than a press of the pointer.
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
