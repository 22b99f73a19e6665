#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// What the controller needs of the program around it. Tests replace the hooks that would end or change their
/// process.
struct ApplicationHooks {
    /// The bundle to remove in a self-uninstall: an absolute path, "….app" for an installed program.
    std::function<std::string()> bundleLocation;
    /// What a self-uninstall removes besides the bundle and the per-user data: absolute paths.
    std::vector<std::string> additionalOwnedData;
    /// Main thread, before a self-uninstall: from now on no window may save its frame.
    std::function<void()> forgetWindowState;
    /// Main thread, after a successful self-uninstall. Ends the process at once; nothing may be saved.
    std::function<void()> exitProcess;
    /// Any thread: returns once the window shows its first frame, at the latest after a fraction of a second.
    /// The programs of a scan would compete with the window for the processors. None: nothing is waited for.
    std::function<void()> awaitFirstFrame;
    /// Main thread, on closing: ends every child program that still runs, so that the worker is not held up.
    std::function<void()> endCommands;

    /// The hooks of the real program, without any window.
    [[nodiscard]] static ApplicationHooks ofThisProgram();
};

} // namespace zentrill
