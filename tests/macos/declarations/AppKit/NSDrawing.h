#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSColorSpace;

@interface NSColor : NSObject <NSCopying>
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha;
@property(class, readonly, strong) NSColor* clearColor;
@property(class, readonly, strong) NSColor* labelColor;
@property(class, readonly, strong) NSColor* secondaryLabelColor;
@property(class, readonly, strong) NSColor* placeholderTextColor;
@property(class, readonly, strong) NSColor* separatorColor;
@property(class, readonly, strong) NSColor* systemRedColor;
// Returns nil if there is no such conversion.
- (nullable NSColor*)colorUsingColorSpace:(NSColorSpace*)space;
// Valid for colours in an RGB colour space only.
@property(readonly) CGFloat redComponent;
@property(readonly) CGFloat greenComponent;
@property(readonly) CGFloat blueComponent;
@property(readonly) CGFloat alphaComponent;
// Resolves a dynamic colour in the current drawing appearance.
@property(readonly) CGColorRef CGColor;
// Sets both the fill and the stroke colour of the current graphics context.
- (void)set;
- (void)setFill;
- (void)setStroke;
@end

@interface NSColorSpace : NSObject
@property(class, readonly, strong) NSColorSpace* sRGBColorSpace;
@property(class, readonly, strong) NSColorSpace* deviceRGBColorSpace;
@end

typedef NS_ENUM(NSUInteger, NSLineCapStyle) {
  NSLineCapStyleButt = 0,
  NSLineCapStyleRound = 1,
};
typedef NS_ENUM(NSUInteger, NSLineJoinStyle) {
  NSLineJoinStyleMiter = 0,
  NSLineJoinStyleRound = 1,
};

@interface NSBezierPath : NSObject <NSCopying>
+ (NSBezierPath*)bezierPath;
+ (NSBezierPath*)bezierPathWithOvalInRect:(NSRect)rect;
+ (NSBezierPath*)bezierPathWithRoundedRect:(NSRect)rect
                                   xRadius:(CGFloat)xRadius
                                   yRadius:(CGFloat)yRadius;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)curveToPoint:(NSPoint)endPoint
       controlPoint1:(NSPoint)controlPoint1
       controlPoint2:(NSPoint)controlPoint2;
@property CGFloat lineWidth;
@property NSLineCapStyle lineCapStyle;
@property NSLineJoinStyle lineJoinStyle;
- (void)stroke;
- (void)fill;
@end

@interface NSGradient : NSObject <NSCopying>
- (nullable instancetype)initWithColors:(NSArray<NSColor*>*)colorArray
                            atLocations:(nullable const CGFloat*)locations
                             colorSpace:(NSColorSpace*)colorSpace NS_DESIGNATED_INITIALIZER;
- (void)drawInBezierPath:(NSBezierPath*)path angle:(CGFloat)angle;
@end

typedef NSString* NSAppearanceName;
FOUNDATION_EXPORT NSAppearanceName const NSAppearanceNameAqua;
FOUNDATION_EXPORT NSAppearanceName const NSAppearanceNameDarkAqua;

@interface NSAppearance : NSObject
@property(readonly, copy) NSAppearanceName name;
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:
    (NSArray<NSAppearanceName>*)appearances;
// Since macOS 11.
- (void)performAsCurrentDrawingAppearance:(void (^)(void))block;
@end

NS_ASSUME_NONNULL_END
