#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

typedef CGFloat NSFontWeight;
FOUNDATION_EXPORT const NSFontWeight NSFontWeightRegular;
FOUNDATION_EXPORT const NSFontWeight NSFontWeightSemibold;

@interface NSFont : NSObject <NSCopying>
// Returns nil if the font is not installed.
+ (nullable NSFont*)fontWithName:(NSString*)fontName size:(CGFloat)fontSize;
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize;
+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
@end

// The values on Apple silicon; on Intel those of centre and right are exchanged. See Apple
// developer documentation, NSTextAlignment.
typedef NS_ENUM(NSInteger, NSTextAlignment) {
  NSTextAlignmentLeft = 0,
  NSTextAlignmentCenter = 1,
  NSTextAlignmentRight = 2,
};

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByTruncatingTail = 4,
};

typedef NS_ENUM(NSUInteger, NSControlSize) {
  NSControlSizeRegular = 0,
  NSControlSizeSmall = 1,
};

@interface NSCell : NSObject
// Whether a text that wraps ends in an ellipsis where it is cut. NO by default.
@property BOOL truncatesLastVisibleLine;
@end

@interface NSControl : NSView
@property(nullable, strong) __kindof NSCell* cell;
@property(getter=isEnabled) BOOL enabled;
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property(copy) NSString* stringValue;
@property NSTextAlignment alignment;
// Since macOS 10.10; a property of the cell in earlier versions.
@property NSControlSize controlSize;
@property NSLineBreakMode lineBreakMode;
@property(nullable, strong) NSFont* font;
@end

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)stringValue;
+ (instancetype)wrappingLabelWithString:(NSString*)stringValue;
+ (instancetype)textFieldWithString:(NSString*)stringValue;
@property(nullable, copy) NSColor* textColor;
// Of the whole text, its line breaks included. 0, the default, is no limit.
@property NSInteger maximumNumberOfLines;
@end

typedef NS_ENUM(NSUInteger, NSBezelStyle) {
  NSBezelStyleRounded = 1,
  NSBezelStyleInline = 15,
};

@class NSImage;

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action;
@property(copy) NSString* title;
@property(nullable, strong) NSImage* image;
@property(getter=isBordered) BOOL bordered;
@property NSBezelStyle bezelStyle;
// Since macOS 10.12.2.
@property(nullable, copy) NSColor* bezelColor;
@property(copy) NSString* keyEquivalent;
@end

typedef NS_ENUM(NSUInteger, NSProgressIndicatorStyle) {
  NSProgressIndicatorStyleBar = 0,
};

// Indeterminate and with a range of 0 to 100 by default.
@interface NSProgressIndicator : NSView
@property NSProgressIndicatorStyle style;
@property(getter=isIndeterminate) BOOL indeterminate;
@property double minValue;
@property double maxValue;
@property double doubleValue;
// Neither has an effect on a determinate indicator.
- (void)startAnimation:(nullable id)sender;
- (void)stopAnimation:(nullable id)sender;
@end

NS_ASSUME_NONNULL_END
