#pragma once

#import <AppKit/NSWindow.h>

NS_ASSUME_NONNULL_BEGIN

@class NSButton;

enum : NSModalResponse { NSAlertFirstButtonReturn = 1000 };

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSButton*)addButtonWithTitle:(NSString*)title;
@property(nullable, strong) NSView* accessoryView;
- (void)layout;
- (NSModalResponse)runModal;
@property(readonly, strong) NSWindow* window;
@end

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@end

@interface NSSavePanel : NSPanel
+ (NSSavePanel*)savePanel;
@property(nullable, readonly, copy) NSURL* URL;
@property(copy) NSString* nameFieldStringValue;
- (void)beginSheetModalForWindow:(NSWindow*)window
               completionHandler:(void (^)(NSModalResponse result))handler;
@end

@interface NSOpenPanel : NSSavePanel
+ (NSOpenPanel*)openPanel;
@property(readonly, copy) NSArray<NSURL*>* URLs;
@property BOOL allowsMultipleSelection;
@property BOOL canChooseDirectories;
@end

NS_ASSUME_NONNULL_END
