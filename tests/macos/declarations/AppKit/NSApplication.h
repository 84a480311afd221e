#pragma once

#import <AppKit/NSDrawing.h>
#import <AppKit/NSEvent.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSApplication;

typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSModalResponseCancel = 0, NSModalResponseOK = 1 };

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular,
  NSApplicationActivationPolicyAccessory,
  NSApplicationActivationPolicyProhibited,
};

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (void)applicationDidBecomeActive:(NSNotification*)notification;
- (void)applicationWillTerminate:(NSNotification*)notification;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app;
@end

@interface NSResponder : NSObject
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_DESIGNATED_INITIALIZER;
@property(nullable, readonly, strong) NSUndoManager* undoManager;
@property(readonly) BOOL acceptsFirstResponder;
- (BOOL)becomeFirstResponder;
- (BOOL)resignFirstResponder;
- (void)keyDown:(NSEvent*)event;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
- (void)insertBacktab:(nullable id)sender;
- (void)mouseEntered:(NSEvent*)event;
- (void)mouseExited:(NSEvent*)event;
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
// Since macOS 10.14; observable with key-value observing. See Apple developer documentation,
// NSApplication.
@property(readonly, strong) NSAppearance* effectiveAppearance;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)run;
- (void)hide:(nullable id)sender;
- (void)terminate:(nullable id)sender;
@end

typedef NSString* NSAboutPanelOptionKey;
FOUNDATION_EXPORT NSAboutPanelOptionKey const NSAboutPanelOptionApplicationName;
// The value is an NSAttributedString.
FOUNDATION_EXPORT NSAboutPanelOptionKey const NSAboutPanelOptionCredits;

@interface NSApplication (NSStandardAboutPanel)
- (void)orderFrontStandardAboutPanelWithOptions:
    (NSDictionary<NSAboutPanelOptionKey, id>*)optionsDictionary;
@end

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
  NSApplicationActivateAllWindows = 1 << 0,
};

@interface NSRunningApplication : NSObject
@property(readonly, getter=isTerminated) BOOL terminated;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
- (BOOL)openURL:(NSURL*)url;
@end

FOUNDATION_EXPORT NSNotificationName const NSWorkspaceDidWakeNotification;

NS_ASSUME_NONNULL_END
