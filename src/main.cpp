#include "StartMessages.h"
#include "controller/ApplicationHooks.h"
#include "controller/UninstallerViewModel.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SelfUninstallService.h"
#include "docker/DockerExecutableLocator.h"
#include "entry/AppDelegate.h"
#include "platform/AccountMenu.h"
#include "platform/BundleLocation.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/Paths.h"
#include "process/Environment.h"
#include "process/ShellCommandRunner.h"
#include "ui/ContentView.h"
#include "ui/ContentViewState.h"
#include "ui/Typography.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace zentrill;

/// How long a first scan waits for the window at most before it starts programs: longer than a window needs
/// on a slow machine, and still too short to be noticed where no window is ever shown.
constexpr std::chrono::milliseconds longestStart{250};

/// Where Linux distributions install `docker`.
std::vector<std::string> additionalDockerCandidates() {
#ifdef __linux__
    return {"/usr/bin/docker"};
#else
    return {};
#endif
}

/// What installing the program for one account puts into the desktop's menu.
std::vector<std::string> menuItems() {
#ifdef __linux__
    return accountMenuItems(SelfUninstallService::defaultBundleIdentifier, homeDirectory(),
                            qgetenv("XDG_DATA_HOME").toStdString());
#else
    return {};
#endif
}

/// The one file that the program writes: the first of the data that self-uninstall removes.
std::string preferencesFile() {
    const std::string home = homeDirectory();
    return home.empty() ? std::string() : SelfUninstallService().ownedDataURLs(home).front();
}

/// A cleaner must not litter: no compiled QML, no shader cache, no font cache, no desktop plug-in that keeps
/// files, no message bus started for it, no runtime folder.
void keepQtFromWritingFiles() {
    const std::string runtimeFolder = qgetenv("XDG_RUNTIME_DIR").toStdString();
    if (runtimeFolder.empty()) {
        qputenv("TMPDIR", "/dev/null"); // Otherwise Qt makes a runtime folder below /tmp.
    }
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
        (runtimeFolder.empty() || !FileSystem::shared().fileExists(runtimeFolder + "/bus"))) {
        qputenv("DBUS_SESSION_BUS_ADDRESS",
                "disabled:"); // Otherwise a bus is launched, which writes ~/.dbus.
    }
    // The views are compiled ahead. With a disabled cache, they would be compiled again at every start.
    qputenv("QML_DISK_CACHE_PATH", "/dev/null");
    qputenv("QT_QPA_PLATFORMTHEME", "generic");
    const std::string fonts = paths::appending(bundleLocation(), "Contents/Resources/fonts.conf");
    if (qEnvironmentVariableIsEmpty("FONTCONFIG_FILE") && FileSystem::shared().fileExists(fonts)) {
        qputenv("FONTCONFIG_FILE", QByteArray::fromStdString(fonts));
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication::setDesktopSettingsAware(false);
}

/// Without its views the program would go on in a window that shows nothing.
void endWithoutViews(const QString& reason) {
    static_cast<void>(std::fprintf(stderr, "Zentrill cannot open its window: %s.\n", qPrintable(reason)));
    QCoreApplication::exit(EXIT_FAILURE);
}

} // namespace

int main(int argc, char* argv[]) {
    leaveTerminalBehind();
    // Made first, so that the programs it starts get the person's own environment.
    const auto commandRunner = std::make_shared<ShellCommandRunner>();
    keepQtFromWritingFiles();
    StartMessages messages;
    const QGuiApplication application(argc, argv);
    messages.displayFound();
    QGuiApplication::setFont(Typography().body());
    QGuiApplication::setApplicationName(QStringLiteral("Zentrill"));
    QGuiApplication::setApplicationVersion(QStringLiteral(ZENTRILL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.user.Zentrill"));
    QGuiApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());

    std::promise<void> firstFrame;
    UninstallerViewModel* controller = nullptr;
    AppDelegate* forgetful = nullptr;
    AppDelegate delegate(
        [&] {
            ApplicationHooks hooks = ApplicationHooks::ofThisProgram();
            hooks.additionalOwnedData = menuItems();
            hooks.forgetWindowState = [&] { forgetful->forgetWindowState(); };
            hooks.awaitFirstFrame = [shown = firstFrame.get_future().share()] {
                static_cast<void>(shown.wait_for(longestStart));
            };
            auto view = std::make_unique<ContentView>([&] {
                return std::make_unique<UninstallerViewModel>(
                    commandRunner, std::make_shared<SafeDeletionEngine>(),
                    std::make_shared<DockerExecutableLocator>(FileSystem::shared(), homeDirectory(),
                                                              additionalDockerCandidates()),
                    true, hooks);
            });
            controller = &view->controller();
            QObject::connect(view.get(), &ContentView::failed, &endWithoutViews);
            QObject::connect(&view->state(), &ContentViewState::windowShownChanged,
                             [&] { firstFrame.set_value(); });
            return view;
        },
        preferencesFile());
    forgetful = &delegate;
    delegate.applicationDidFinishLaunching();
    const int status = QGuiApplication::exec();
    // A worker that is stuck in a system call must not keep a closed program alive, and has nothing to clean
    // up.
    if (!controller->shutDown()) {
        std::_Exit(status);
    }
    return status;
}
