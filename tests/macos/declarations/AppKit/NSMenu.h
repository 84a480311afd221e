#pragma once

#import <AppKit/NSControls.h>
#import <AppKit/NSEvent.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;

@interface NSMenuItem : NSObject <NSCopying>
+ (NSMenuItem*)separatorItem;
// The modifier of a key equivalent is Command by default; an empty key equivalent means none.
- (instancetype)initWithTitle:(NSString*)string
                       action:(nullable SEL)selector
                keyEquivalent:(NSString*)charCode NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
@property(nullable) SEL action;
@property(copy) NSString* keyEquivalent;
@property(readonly, getter=isSeparatorItem) BOOL separatorItem;
@property(readonly, getter=isEnabled) BOOL enabled;
@property(nullable, strong) NSMenu* submenu;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property(nullable, weak) id target;
@end

@interface NSMenu : NSObject <NSCopying>
- (instancetype)initWithTitle:(NSString*)title NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
- (void)addItem:(NSMenuItem*)newItem;
// Raises an exception for an index beyond the number of items.
- (void)insertItem:(NSMenuItem*)newItem atIndex:(NSInteger)index;
@property(readonly) NSInteger numberOfItems;
- (nullable NSMenuItem*)itemAtIndex:(NSInteger)index;
- (void)performActionForItemAtIndex:(NSInteger)index;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end

// `windowsMenu` is the submenu of the main menu to which the system adds the list of windows.
@interface NSApplication (NSMenu)
@property(nullable, strong) NSMenu* mainMenu;
@property(nullable, strong) NSMenu* windowsMenu;
@end

static const CGFloat NSVariableStatusItemLength = -1.0;

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

NS_ASSUME_NONNULL_END
