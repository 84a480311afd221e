#pragma once

#import <AppKit/NSControls.h>
#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSAttributedStringKey;
FOUNDATION_EXPORT NSAttributedStringKey const NSFontAttributeName;
FOUNDATION_EXPORT NSAttributedStringKey const NSForegroundColorAttributeName;
FOUNDATION_EXPORT NSAttributedStringKey const NSParagraphStyleAttributeName;

typedef NS_OPTIONS(NSInteger, NSStringDrawingOptions) {
  NSStringDrawingUsesLineFragmentOrigin = 1 << 0,
  NSStringDrawingUsesFontLeading = 1 << 1,
};

@class NSStringDrawingContext;

@interface NSString (NSStringDrawing)
- (void)drawAtPoint:(NSPoint)point
     withAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
// Since macOS 10.11, see Apple developer documentation, NSString.
- (NSRect)boundingRectWithSize:(NSSize)size
                       options:(NSStringDrawingOptions)options
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes
                       context:(nullable NSStringDrawingContext*)context;
@end

@interface NSParagraphStyle : NSObject <NSCopying>
@property(readonly) CGFloat minimumLineHeight;
@end

@interface NSMutableParagraphStyle : NSParagraphStyle
@property CGFloat minimumLineHeight;
@end

@interface NSTextContainer : NSObject
// Since macOS 10.11; `containerSize` in earlier versions.
@property NSSize size;
@property CGFloat lineFragmentPadding;
@property BOOL widthTracksTextView;
@end

@interface NSLayoutManager : NSObject
- (void)ensureLayoutForTextContainer:(NSTextContainer*)container;
- (NSRect)usedRectForTextContainer:(NSTextContainer*)container;
@property(readonly) NSRect extraLineFragmentRect;
@end

@interface NSAttributedString : NSObject <NSCopying>
- (instancetype)initWithString:(NSString*)string;
@property(readonly) NSUInteger length;
@end

@interface NSMutableAttributedString : NSAttributedString
- (void)addAttribute:(NSAttributedStringKey)name value:(id)value range:(NSRange)range;
@end

@interface NSTextStorage : NSMutableAttributedString
@end

@protocol NSTextDelegate <NSObject>
@optional
- (void)textDidChange:(NSNotification*)notification;
@end

@protocol NSTextViewDelegate <NSTextDelegate>
@end

@interface NSTextInputContext : NSObject
- (void)discardMarkedText;
@end

@interface NSView (NSTextInputContext)
@property(nullable, readonly, strong) NSTextInputContext* inputContext;
@end

@interface NSText : NSView
- (instancetype)initWithFrame:(NSRect)frameRect NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* string;
@property(getter=isEditable) BOOL editable;
@property(getter=isRichText) BOOL richText;
@property BOOL drawsBackground;
@property(nullable, copy) NSColor* backgroundColor;
@property(nullable, strong) NSFont* font;
@property(nullable, copy) NSColor* textColor;
@property NSRange selectedRange;
@property NSSize maxSize;
@property(getter=isHorizontallyResizable) BOOL horizontallyResizable;
@property(getter=isVerticallyResizable) BOOL verticallyResizable;
- (void)scrollRangeToVisible:(NSRange)range;
- (void)cut:(nullable id)sender;
- (void)copy:(nullable id)sender;
- (void)paste:(nullable id)sender;
- (void)selectAll:(nullable id)sender;
@end

@interface NSTextView : NSText
// -initWithFrame: creates the container and calls the first of these. See Apple developer
// documentation, NSTextView.
- (instancetype)initWithFrame:(NSRect)frameRect
                textContainer:(nullable NSTextContainer*)container NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithFrame:(NSRect)frameRect;
@property(nullable, weak) id<NSTextViewDelegate> delegate;
@property(nullable, strong) NSTextContainer* textContainer;
@property NSSize textContainerInset;
@property(nullable, readonly, strong) NSLayoutManager* layoutManager;
@property(nullable, readonly, strong) NSTextStorage* textStorage;
@property(copy) NSColor* insertionPointColor;
@property(nullable, copy) NSParagraphStyle* defaultParagraphStyle;
@property(copy) NSDictionary<NSAttributedStringKey, id>* typingAttributes;
@property BOOL allowsUndo;
// From the protocol NSTextInputClient.
- (BOOL)hasMarkedText;
- (void)unmarkText;
@end

NS_ASSUME_NONNULL_END
