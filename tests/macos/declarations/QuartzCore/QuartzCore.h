#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface CALayer : NSObject
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@property CGFloat borderWidth;
// A static colour; it does not follow a dynamic NSColor.
@property(nullable) CGColorRef borderColor;
@end

NS_ASSUME_NONNULL_END
