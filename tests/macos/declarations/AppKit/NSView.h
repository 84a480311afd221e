#pragma once

#import <AppKit/NSApplication.h>

NS_ASSUME_NONNULL_BEGIN

@class NSLayoutDimension;
@class NSLayoutXAxisAnchor;
@class NSLayoutYAxisAnchor;
@class NSWindow;

@interface NSLayoutConstraint : NSObject
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
@property CGFloat constant;
@end

typedef NS_ENUM(NSInteger, NSLayoutAttribute) {
  NSLayoutAttributeCenterX = 9,
  NSLayoutAttributeCenterY = 10,
};

@interface NSLayoutAnchor<AnchorType> : NSObject
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor;
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor
                                      constant:(CGFloat)constant;
- (NSLayoutConstraint*)constraintLessThanOrEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor
                                                constant:(CGFloat)constant;
@end
@interface NSLayoutXAxisAnchor : NSLayoutAnchor <NSLayoutXAxisAnchor*>
@end
@interface NSLayoutYAxisAnchor : NSLayoutAnchor <NSLayoutYAxisAnchor*>
@end
@interface NSLayoutDimension : NSLayoutAnchor <NSLayoutDimension*>
- (NSLayoutConstraint*)constraintEqualToConstant:(CGFloat)constant;
- (NSLayoutConstraint*)constraintLessThanOrEqualToConstant:(CGFloat)constant;
@end

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewWidthSizable = 2,
};

typedef NS_OPTIONS(NSUInteger, NSTrackingAreaOptions) {
  NSTrackingMouseEnteredAndExited = 0x01,
  NSTrackingActiveAlways = 0x80,
  NSTrackingInVisibleRect = 0x200,
};

@interface NSTrackingArea : NSObject <NSCopying>
- (instancetype)initWithRect:(NSRect)rect
                     options:(NSTrackingAreaOptions)options
                       owner:(nullable id)owner
                    userInfo:(nullable NSDictionary<id, id>*)userInfo NS_DESIGNATED_INITIALIZER;
@end

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_DESIGNATED_INITIALIZER;
@property NSRect frame;
@property(readonly) NSRect bounds;
@property(readonly, getter=isFlipped) BOOL flipped;
@property NSAutoresizingMaskOptions autoresizingMask;
@property CGFloat alphaValue;
@property(nullable, copy) NSString* toolTip;
// Of the protocol NSAccessibility.
@property(nullable, copy) NSString* accessibilityLabel;
@property BOOL needsDisplay;
- (void)drawRect:(NSRect)dirtyRect;
@property(readonly, copy) NSArray<NSTrackingArea*>* trackingAreas;
- (void)addTrackingArea:(NSTrackingArea*)trackingArea;
- (void)removeTrackingArea:(NSTrackingArea*)trackingArea;
- (void)updateTrackingAreas;
- (void)layoutSubtreeIfNeeded;
@property(nullable, readonly, weak) NSWindow* window;
@property(getter=isHidden) BOOL hidden;
@property BOOL translatesAutoresizingMaskIntoConstraints;
@property(readonly, strong) NSLayoutXAxisAnchor* leadingAnchor;
@property(readonly, strong) NSLayoutXAxisAnchor* trailingAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* topAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* bottomAnchor;
@property(readonly, strong) NSLayoutXAxisAnchor* centerXAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* centerYAnchor;
@property(readonly, strong) NSLayoutDimension* widthAnchor;
@property(readonly, strong) NSLayoutDimension* heightAnchor;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
@end

typedef NS_ENUM(NSUInteger, NSBorderType) {
  NSNoBorder = 0,
};
typedef NS_ENUM(NSInteger, NSScrollerStyle) {
  NSScrollerStyleLegacy = 0,
  NSScrollerStyleOverlay = 1,
};

@interface NSScrollView : NSView
@property(nullable, strong) __kindof NSView* documentView;
@property BOOL drawsBackground;
@property NSBorderType borderType;
@property BOOL hasVerticalScroller;
@property BOOL autohidesScrollers;
@property NSScrollerStyle scrollerStyle;
@end

typedef NS_ENUM(NSInteger, NSVisualEffectMaterial) {
  // Apple developer documentation, NSVisualEffectView.Material.windowBackground.
  NSVisualEffectMaterialWindowBackground = 12,
};
typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
  NSVisualEffectBlendingModeBehindWindow,
  NSVisualEffectBlendingModeWithinWindow,
};

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@end

typedef NS_ENUM(NSInteger, NSUserInterfaceLayoutOrientation) {
  NSUserInterfaceLayoutOrientationHorizontal = 0,
  NSUserInterfaceLayoutOrientationVertical = 1,
};

@interface NSStackView : NSView
+ (instancetype)stackViewWithViews:(NSArray<NSView*>*)views;
@property NSUserInterfaceLayoutOrientation orientation;
@property NSLayoutAttribute alignment;
@property CGFloat spacing;
@end

NS_ASSUME_NONNULL_END
