#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface CALayer : NSObject
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@property CGFloat borderWidth;
// Keeps the colour that it is given; does not follow a dynamic one.
@property(nullable) CGColorRef borderColor;
@end

NS_ASSUME_NONNULL_END
