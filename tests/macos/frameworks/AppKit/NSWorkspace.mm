#include <algorithm>

#include "frameworks/AppKit/AppKitState.h"
#include "frameworks/Foundation/Strings.h"
#include "runtime/Runtime.h"

using navora::doubles::AppKitState;
using navora::doubles::utf8Of;

NSNotificationName const NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
NSAppearanceName const NSAppearanceNameAqua = @"NSAppearanceNameAqua";
NSAppearanceName const NSAppearanceNameDarkAqua = @"NSAppearanceNameDarkAqua";

@interface NSEvent ()
- (instancetype)initWithKeyCode:(unsigned short)keyCode
                     characters:(nullable NSString*)characters
                      modifiers:(NSEventModifierFlags)modifiers;
@end

// A local monitor of events.
@interface NavoraEventMonitor : NSObject
@property(nonatomic) NSEventMask mask;
@property(nonatomic, copy) NSEvent* (^handler)(NSEvent*);
@end

@implementation NavoraEventMonitor
@end

namespace {

std::vector<NavoraEventMonitor*>& monitors() {
  static auto& list = *[] {
    navora::objc::whenTestEnds([] {
      if (!monitors().empty()) navora::objc::complain("An event monitor was not removed");
      monitors().clear();
    });
    return new std::vector<NavoraEventMonitor*>;
  }();
  return list;
}

}  // namespace

namespace navora::doubles {

AppKitState& AppKitState::shared() {
  static auto& state = *[] {
    objc::whenTestEnds([] { AppKitState::shared() = AppKitState(); });
    return new AppKitState;
  }();
  return state;
}

void wake() {
  [[NSWorkspace sharedWorkspace].notificationCenter
      postNotificationName:NSWorkspaceDidWakeNotification
                    object:[NSWorkspace sharedWorkspace]];
}

NSEvent* makeKeyEvent(unsigned short keyCode, NSEventModifierFlags modifiers) {
  return [[NSEvent alloc] initWithKeyCode:keyCode characters:nil modifiers:modifiers];
}

NSEvent* makeCharacterEvent(char character, NSEventModifierFlags modifiers) {
  return [[NSEvent alloc] initWithKeyCode:0xFFFF
                               characters:stringFromUtf8(std::string(1, character))
                                modifiers:modifiers];
}

NSEvent* dispatchKeyDown(NSEvent* event) {
  // A copy, because a handler may remove its own monitor.
  const std::vector<NavoraEventMonitor*> all = monitors();
  for (NavoraEventMonitor* monitor : all) {
    if (event != nil && (monitor.mask & NSEventMaskKeyDown) != 0) event = monitor.handler(event);
  }
  return event;
}

}  // namespace navora::doubles

@implementation NSColor {
  CGFloat _components[4];
}

+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha {
  NSColor* color = [[self alloc] init];
  const CGFloat components[] = {red, green, blue, alpha};
  std::copy(std::begin(components), std::end(components), color->_components);
  return color;
}

- (CGFloat)redComponent {
  return _components[0];
}
- (CGFloat)greenComponent {
  return _components[1];
}
- (CGFloat)blueComponent {
  return _components[2];
}
- (CGFloat)alphaComponent {
  return _components[3];
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSAppearance

@synthesize name = _name;

// Documentation of +appearanceNamed:: nil for an unknown name.
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name {
  if (![name isEqualToString:NSAppearanceNameAqua] &&
      ![name isEqualToString:NSAppearanceNameDarkAqua]) {
    return nil;
  }
  NSAppearance* appearance = [[NSAppearance alloc] init];
  appearance->_name = [name copy];
  return appearance;
}

@end

@implementation NSEvent

@synthesize keyCode = _keyCode, charactersIgnoringModifiers = _charactersIgnoringModifiers,
            modifierFlags = _modifierFlags;

- (instancetype)initWithKeyCode:(unsigned short)keyCode
                     characters:(nullable NSString*)characters
                      modifiers:(NSEventModifierFlags)modifiers {
  self = [super init];
  if (self != nil) {
    _keyCode = keyCode;
    _charactersIgnoringModifiers = [characters copy];
    _modifierFlags = modifiers;
  }
  return self;
}

+ (NSPoint)mouseLocation {
  return AppKitState::shared().mouse;
}

+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent*))handler {
  NavoraEventMonitor* monitor = [[NavoraEventMonitor alloc] init];
  monitor.mask = mask;
  monitor.handler = handler;
  monitors().push_back(monitor);
  return monitor;
}

// Only once: documentation of the method.
+ (void)removeMonitor:(id)monitor {
  if (std::erase(monitors(), monitor) == 0) {
    navora::objc::fail("an event monitor was removed twice");
  }
}

- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}

@end

@implementation NSScreen

@synthesize frame = _frame, visibleFrame = _visibleFrame;

+ (NSArray<NSScreen*>*)screens {
  NSMutableArray<NSScreen*>* screens = [NSMutableArray array];
  for (const AppKitState::Screen& description : AppKitState::shared().screens) {
    NSScreen* screen = [[NSScreen alloc] init];
    screen->_frame = description.frame;
    screen->_visibleFrame = description.visibleFrame;
    [screens addObject:screen];
  }
  return screens;
}

+ (nullable NSScreen*)mainScreen {
  NSArray<NSScreen*>* screens = self.screens;
  return screens.count > 0 ? screens[0] : nil;
}

@end

@implementation NSRunningApplication {
 @package
  std::string _displayName;
}

- (BOOL)isTerminated {
  return AppKitState::shared().frontmostIsTerminated;
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
  AppKitState::shared().activated.push_back(_displayName);
  return YES;
}

@end

@implementation NSWorkspace

@synthesize notificationCenter = _notificationCenter;

+ (NSWorkspace*)sharedWorkspace {
  static NSWorkspace* const workspace = navora::objc::forever([[NSWorkspace alloc] init]);
  return workspace;
}

// A centre of its own, not the default one: documentation of the property.
- (instancetype)init {
  self = [super init];
  if (self != nil) _notificationCenter = navora::objc::forever([[NSNotificationCenter alloc] init]);
  return self;
}

- (nullable NSRunningApplication*)frontmostApplication {
  const std::string& name = AppKitState::shared().frontmost;
  if (name.empty()) return nil;
  NSRunningApplication* application = [[NSRunningApplication alloc] init];
  application->_displayName = name;
  return application;
}

- (BOOL)openURL:(NSURL*)url {
  if (!AppKitState::shared().opensUrls) return NO;
  AppKitState::shared().openedUrls.push_back(utf8Of(url.absoluteString));
  return YES;
}

@end
