// What src/controller/entry/MacWindow.mm takes from AppKit, for compiling that file where Apple's own headers
// are not: they come with Xcode alone. The names and types are those of Apple's documentation; nothing is
// linked with it.
#pragma once

using BOOL = bool;
#define YES true
#define NO false
using NSUInteger = unsigned long;
using NSInteger = long;

using NSWindowStyleMask = NSUInteger;
inline constexpr NSWindowStyleMask NSWindowStyleMaskFullSizeContentView = NSWindowStyleMask{1} << 15U;

enum NSWindowTitleVisibility : NSInteger { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };

__attribute__((objc_root_class))
@interface NSObject
@end

@interface NSString : NSObject
@end

using NSAppearanceName = NSString*;
extern "C" NSAppearanceName const NSAppearanceNameVibrantDark;

@interface NSAppearance : NSObject
+ (NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

@interface NSWindow : NSObject
@property NSWindowStyleMask styleMask;
@property BOOL titlebarAppearsTransparent;
@property NSWindowTitleVisibility titleVisibility;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property(strong) NSAppearance* appearance;
@end

@interface NSView : NSObject
@property(readonly, assign) NSWindow* window;
@end
