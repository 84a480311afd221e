#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@class NSWindow;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskClosable = 1 << 1,
  NSWindowStyleMaskMiniaturizable = 1 << 2,
  NSWindowStyleMaskResizable = 1 << 3,
  // Valid for panels only.
  NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
  NSBackingStoreBuffered = 2,
};

typedef NS_ENUM(NSInteger, NSWindowTitleVisibility) {
  NSWindowTitleVisible = 0,
  NSWindowTitleHidden = 1,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

// The value of kCGFloatingWindowLevel. See Apple developer documentation, NSWindow.Level.
typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSFloatingWindowLevel = 3;

typedef NSString* NSWindowFrameAutosaveName;

@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow*)sender;
- (void)windowDidResignKey:(NSNotification*)notification;
@end

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
@property NSWindowTitleVisibility titleVisibility;
@property NSWindowLevel level;
@property(getter=isOpaque) BOOL opaque;
@property(nullable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property BOOL hidesOnDeactivate;
@property NSWindowCollectionBehavior collectionBehavior;
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
// From the protocol NSAppearanceCustomization. Nil inherits the application's appearance.
@property(nullable, strong) NSAppearance* appearance;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly) NSRect frame;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
@property(nullable, readonly, strong) NSScreen* screen;
@property NSSize minSize;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(nullable, strong) __kindof NSView* contentView;
@property(nullable, weak) NSView* initialFirstResponder;
@property(nullable, readonly, weak) NSResponder* firstResponder;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
@property BOOL autorecalculatesKeyViewLoop;
- (void)selectPreviousKeyView:(nullable id)sender;
@property(readonly, getter=isMiniaturized) BOOL miniaturized;
// A method, because the property is read-only; returns NO if the name is in use. See Apple
// developer documentation, -[NSWindow setFrameAutosaveName:].
- (BOOL)setFrameAutosaveName:(NSWindowFrameAutosaveName)name;
- (void)center;
- (void)deminiaturize:(nullable id)sender;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)performMiniaturize:(nullable id)sender;
- (void)performClose:(nullable id)sender;
@end

NS_ASSUME_NONNULL_END
