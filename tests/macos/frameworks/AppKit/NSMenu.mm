#include <algorithm>
#include <string>

#include "frameworks/AppKit/AppKitState.h"
#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::AppKitState;

extern "C" void objc_msgSend();

namespace {

// The target of an item without one is the first responder that has the method, and then the
// application: Cocoa Event Handling Guide, "The Path of Action Messages".
id targetOf(NSMenuItem* item) {
  if (item.target != nil) return item.target;
  id responder = AppKitState::shared().firstResponder;
  for (id candidate : {responder, static_cast<id>([NSApplication sharedApplication])}) {
    if ([candidate respondsToSelector:item.action]) return candidate;
  }
  return nil;
}

}  // namespace

@implementation NSResponder

- (instancetype)init {
  return [super init];
}

@end

@implementation NSApplication

+ (__kindof NSApplication*)sharedApplication {
  static NSApplication* const application = navora::objc::forever([[NSApplication alloc] init]);
  return application;
}

- (void)hide:(nullable id)sender {
  AppKitState::shared().applicationActions.emplace_back("hide");
}

- (void)terminate:(nullable id)sender {
  AppKitState::shared().applicationActions.emplace_back("terminate");
}

@end

@implementation NSMenuItem {
  BOOL _isSeparator;
}

@synthesize title = _title, action = _action, keyEquivalent = _keyEquivalent,
            keyEquivalentModifierMask = _keyEquivalentModifierMask, target = _target,
            submenu = _submenu;

+ (NSMenuItem*)separatorItem {
  NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:@"" action:nullptr keyEquivalent:@""];
  item->_isSeparator = YES;
  return item;
}

- (instancetype)initWithTitle:(NSString*)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString*)keyEquivalent {
  if (title == nil || keyEquivalent == nil) {
    navora::objc::raise("NSInvalidArgumentException", "a menu item without a title or a key");
  }
  self = [super init];
  if (self != nil) {
    _title = [title copy];
    _action = action;
    _keyEquivalent = [keyEquivalent copy];
    // Documentation of keyEquivalentModifierMask.
    _keyEquivalentModifierMask = NSEventModifierFlagCommand;
  }
  return self;
}

- (BOOL)isSeparatorItem {
  return _isSeparator;
}

// Items are enabled automatically, if their target has the action's method: documentation of
// NSMenu's autoenablesItems.
- (BOOL)isEnabled {
  return _action != nullptr && [targetOf(self) respondsToSelector:_action];
}

- (id)copyWithZone:(nullable NSZone*)zone {
  navora::objc::fail("menu items are not copied");
}

@end

@implementation NSMenu {
  NSMutableArray<NSMenuItem*>* _items;
}

@synthesize title = _title;

- (instancetype)initWithTitle:(NSString*)title {
  self = [super init];
  if (self != nil) {
    _title = [title copy];
    _items = [NSMutableArray array];
  }
  return self;
}

- (NSInteger)numberOfItems {
  return static_cast<NSInteger>(_items.count);
}

- (nullable NSMenuItem*)itemAtIndex:(NSInteger)index {
  return _items[static_cast<NSUInteger>(index)];
}

- (void)addItem:(NSMenuItem*)item {
  [_items addObject:item];
}

- (void)performActionForItemAtIndex:(NSInteger)index {
  NSMenuItem* item = [self itemAtIndex:index];
  if (!item.enabled) return;
  reinterpret_cast<void (*)(id, SEL, id)>(objc_msgSend)(targetOf(item), item.action, item);
}

// Performs the action of the enabled item with that key: documentation of the method.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  constexpr NSEventModifierFlags considered = NSEventModifierFlagCommand | NSEventModifierFlagShift;
  for (NSInteger index = 0; index < self.numberOfItems; ++index) {
    NSMenuItem* item = [self itemAtIndex:index];
    if ([item.submenu performKeyEquivalent:event]) return YES;
    if ([item.keyEquivalent isEqualToString:event.charactersIgnoringModifiers] &&
        item.keyEquivalentModifierMask == (event.modifierFlags & considered) && item.enabled) {
      [self performActionForItemAtIndex:index];
      return YES;
    }
  }
  return NO;
}

- (id)copyWithZone:(nullable NSZone*)zone {
  navora::objc::fail("menus are not copied");
}

@end
