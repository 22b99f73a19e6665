#pragma once

#include "controller/UninstallerViewModel.h"

#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Makes the controller's type known to QML; the controller itself does not depend on QML.
struct ControllerForeign {
    Q_GADGET
    QML_FOREIGN(zentrill::UninstallerViewModel)
    QML_NAMED_ELEMENT(UninstallerViewModel)
    QML_UNCREATABLE("Made by ContentView")
};

} // namespace zentrill
