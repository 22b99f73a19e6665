#include "controller/ApplicationHooks.h"

#include "platform/BundleLocation.h"
#include "process/ShellCommandRunner.h"

#include <cstdlib>

namespace zentrill {

ApplicationHooks ApplicationHooks::ofThisProgram() {
    ApplicationHooks hooks;
    hooks.bundleLocation = [] { return zentrill::bundleLocation(); };
    hooks.forgetWindowState = [] {};
    hooks.exitProcess = [] { std::_Exit(EXIT_SUCCESS); };
    hooks.endCommands = [] { ShellCommandRunner::shutDown(); };
    return hooks;
}

} // namespace zentrill
