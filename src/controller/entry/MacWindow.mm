#include "entry/MacWindow.h"

#include <QWindow>

#import <AppKit/AppKit.h>

namespace zentrill {

void styleMacWindow(QWindow& window) {
    auto* view = reinterpret_cast<NSView*>(window.winId());
    NSWindow* native = view.window;
    native.styleMask |= NSWindowStyleMaskFullSizeContentView;
    native.titlebarAppearsTransparent = YES;
    native.titleVisibility = NSWindowTitleHidden;
    native.movableByWindowBackground = YES;
    native.appearance = [NSAppearance appearanceNamed:NSAppearanceNameVibrantDark];
}

} // namespace zentrill
