#pragma once

#import <AppKit/NSDrawing.h>
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSColorSpaceName;
FOUNDATION_EXPORT NSColorSpaceName const NSDeviceRGBColorSpace;

@interface NSImageRep : NSObject <NSCopying>
@property NSSize size;
@property NSInteger pixelsWide;
@property NSInteger pixelsHigh;
@end

@interface NSBitmapImageRep : NSImageRep
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bitsPerSample
                                  samplesPerPixel:(NSInteger)samplesPerPixel
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)bytesPerRow
                                     bitsPerPixel:(NSInteger)bitsPerPixel;
// The origin is the upper left corner.
- (nullable NSColor*)colorAtX:(NSInteger)x y:(NSInteger)y;
@end

@interface NSImage : NSObject <NSCopying>
- (instancetype)initWithSize:(NSSize)size;
@property NSSize size;
- (void)addRepresentation:(NSImageRep*)imageRep;
@property(readonly, copy) NSArray<NSImageRep*>* representations;
// Accessors of the property `template`, whose name is a keyword of C++. See Apple developer
// documentation, NSImage.
- (BOOL)isTemplate;
- (void)setTemplate:(BOOL)isTemplate;
@end

typedef NS_ENUM(NSUInteger, NSImageInterpolation) {
  NSImageInterpolationHigh = 3,
};
typedef NS_ENUM(NSUInteger, NSCompositingOperation) {
  NSCompositingOperationCopy = 1,
};

@interface NSGraphicsContext : NSObject
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmapRep;
// Saves and restores the current context as well.
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@property NSImageInterpolation imageInterpolation;
@end

@interface NSAffineTransform : NSObject <NSCopying>
+ (NSAffineTransform*)transform;
- (void)scaleXBy:(CGFloat)scaleX yBy:(CGFloat)scaleY;
// Appends to the transform of the current graphics context. From a category in AppKit.
- (void)concat;
@end

FOUNDATION_EXPORT void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation);

NS_ASSUME_NONNULL_END
