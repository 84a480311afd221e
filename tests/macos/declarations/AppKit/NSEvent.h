#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
  // 1 << NSEventTypeKeyDown, which is 10.
  NSEventMaskKeyDown = 1ULL << 10,
};

typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
  NSEventModifierFlagShift = 1 << 17,
  NSEventModifierFlagCommand = 1 << 20,
  NSEventModifierFlagDeviceIndependentFlagsMask = 0xffff0000UL,
};

@interface NSEvent : NSObject <NSCopying>
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) unsigned short keyCode;
@property(nullable, readonly, copy) NSString* charactersIgnoringModifiers;
// In screen coordinates, whose origin is the lower left corner of the main screen.
@property(class, readonly) NSPoint mouseLocation;
// The handler returns the event to dispatch, or nil to stop it. See Apple developer documentation,
// NSEvent.
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent* event))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

NS_ASSUME_NONNULL_END
