#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/NSCollections.h>
#import <Foundation/NSObjCRuntime.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSSystem.h>
#import <Foundation/NSURL.h>
#import <Foundation/NSURLSession.h>
#import <Foundation/NSValues.h>
#import <dispatch/dispatch.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

FOUNDATION_EXPORT const NSRect NSZeroRect;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  return NSPoint{x, y};
}
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  return NSSize{width, height};
}
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return NSRect{NSPoint{x, y}, NSSize{width, height}};
}
static inline CGFloat NSMaxY(NSRect rect) {
  return rect.origin.y + rect.size.height;
}
