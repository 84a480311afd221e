#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@class NSWindow;

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskClosable = 1 << 1,
  NSWindowStyleMaskMiniaturizable = 1 << 2,
  NSWindowStyleMaskResizable = 1 << 3,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
  NSBackingStoreBuffered = 2,
};

typedef NSString* NSWindowFrameAutosaveName;

@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow*)sender;
@end

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
@property NSSize minSize;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(nullable, strong) __kindof NSView* contentView;
@property(nullable, weak) NSView* initialFirstResponder;
@property(nullable, readonly, weak) NSResponder* firstResponder;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
@property(readonly, getter=isMiniaturized) BOOL miniaturized;
// The property of this name is read-only; the setter reports whether the name was free. See Apple
// developer documentation, -[NSWindow setFrameAutosaveName:].
- (BOOL)setFrameAutosaveName:(NSWindowFrameAutosaveName)name;
- (void)center;
- (void)deminiaturize:(nullable id)sender;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)orderOut:(nullable id)sender;
@end

NS_ASSUME_NONNULL_END
