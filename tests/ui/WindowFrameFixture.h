#pragma once

#include "UiFixture.h"
#include "entry/WindowFrameAutosave.h"
#include "platform/PropertyList.h"
#include "support/Processes.h"

#include <QScreen>
#include <QWindow>
#include <gtest/gtest.h>

namespace zentrill::test {

/// Where the frame stands in the property list.
inline constexpr const char* frameKey = "NSWindow Frame MainWindow";

/// A window and a file for its frame.
class WindowFrameFixture : public ::testing::Test {
protected:
    WindowFrameFixture() {
        window_.setMinimumSize({300, 200});
        window_.setGeometry(0, 0, 400, 300);
    }

    [[nodiscard]] QString text(const QRect& geometry) const {
        return WindowFrameAutosave::text(geometry, window_.screen()->availableGeometry());
    }

    /// The frame in the file, without the screen's numbers.
    [[nodiscard]] std::optional<QRect> saved() const {
        return WindowFrameAutosave::frame(
            QString::fromStdString(propertyListString(file_, frameKey).value_or(std::string())));
    }

    void use(WindowFrameAutosave& autosave) const { autosave.setAutosaveName(QStringLiteral("MainWindow")); }

    /// Waits until the first place of a new window is known.
    [[nodiscard]] static bool settle(const WindowFrameAutosave& autosave) {
        return waitUntil([&] { return autosave.isSettled(); });
    }

    TemporaryDirectory folder_;
    std::string file_ = folder_.path("Preferences/com.user.Zentrill.plist");
    QWindow window_;
};

} // namespace zentrill::test
