#pragma once

#import <AppKit/NSAccessibility.h>
#import <AppKit/NSApplication.h>

NS_ASSUME_NONNULL_BEGIN

@class CALayer;
@class NSLayoutDimension;
@class NSLayoutXAxisAnchor;
@class NSLayoutYAxisAnchor;
@class NSWindow;

// See Apple developer documentation, NSLayoutConstraint.Priority.
typedef float NSLayoutPriority;
static const NSLayoutPriority NSLayoutPriorityWindowSizeStayPut = 500;
static const NSLayoutPriority NSLayoutPriorityDefaultLow = 250;

@interface NSLayoutConstraint : NSObject
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
// May change from required to optional, or back, only before the constraint is activated.
@property NSLayoutPriority priority;
@property CGFloat constant;
@end

typedef NS_ENUM(NSInteger, NSLayoutConstraintOrientation) {
  NSLayoutConstraintOrientationHorizontal = 0,
  NSLayoutConstraintOrientationVertical = 1,
};

typedef NS_ENUM(NSInteger, NSLayoutAttribute) {
  NSLayoutAttributeLeading = 5,
  NSLayoutAttributeCenterX = 9,
  NSLayoutAttributeCenterY = 10,
};

@interface NSLayoutAnchor<AnchorType> : NSObject
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor;
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor
                                      constant:(CGFloat)constant;
- (NSLayoutConstraint*)constraintGreaterThanOrEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor
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
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
// From the protocol NSAppearanceCustomization.
@property(readonly, strong) NSAppearance* effectiveAppearance;
// Since macOS 10.14; overrides must call super.
- (void)viewDidChangeEffectiveAppearance;
// From the protocol NSAccessibility.
@property(getter=isAccessibilityElement) BOOL accessibilityElement;
@property(nullable, copy) NSAccessibilityRole accessibilityRole;
@property(nullable, copy) NSString* accessibilityLabel;
@property BOOL needsDisplay;
- (void)drawRect:(NSRect)dirtyRect;
@property(readonly, copy) NSArray<NSTrackingArea*>* trackingAreas;
- (void)addTrackingArea:(NSTrackingArea*)trackingArea;
- (void)removeTrackingArea:(NSTrackingArea*)trackingArea;
- (void)updateTrackingAreas;
- (void)layoutSubtreeIfNeeded;
@property(nullable, readonly, weak) NSWindow* window;
@property(readonly) BOOL canBecomeKeyView;
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
// From the category NSConstraintBasedLayoutLayering.
- (void)setContentCompressionResistancePriority:(NSLayoutPriority)priority
                                 forOrientation:(NSLayoutConstraintOrientation)orientation;
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
  // Apple developer documentation, NSVisualEffectView.Material.
  NSVisualEffectMaterialPopover = 6,
  NSVisualEffectMaterialWindowBackground = 12,
};
typedef NS_ENUM(NSInteger, NSVisualEffectBlendingMode) {
  NSVisualEffectBlendingModeBehindWindow,
  NSVisualEffectBlendingModeWithinWindow,
};

typedef NS_ENUM(NSInteger, NSVisualEffectState) {
  NSVisualEffectStateFollowsWindowActiveState,
  NSVisualEffectStateActive,
  NSVisualEffectStateInactive,
};

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@end

typedef NS_ENUM(NSInteger, NSUserInterfaceLayoutOrientation) {
  NSUserInterfaceLayoutOrientationHorizontal = 0,
  NSUserInterfaceLayoutOrientationVertical = 1,
};

typedef NS_ENUM(NSInteger, NSStackViewDistribution) {
  NSStackViewDistributionGravityAreas = -1,
  NSStackViewDistributionFill = 0,
};

// Hidden views take up no space, but keep their constraints.
@interface NSStackView : NSView
+ (instancetype)stackViewWithViews:(NSArray<NSView*>*)views;
@property NSUserInterfaceLayoutOrientation orientation;
@property NSLayoutAttribute alignment;
@property NSStackViewDistribution distribution;
@property CGFloat spacing;
@end

NS_ASSUME_NONNULL_END
