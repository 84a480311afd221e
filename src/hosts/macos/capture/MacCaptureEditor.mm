#include "hosts/macos/capture/MacCaptureEditor.h"

#include <algorithm>
#include <limits>

#include "hosts/macos/system/AppKitConversions.h"
#include "hosts/macos/system/Conversions.h"
#include "platform/CapturePanelView.h"

NS_ASSUME_NONNULL_BEGIN

// The panel's text view. Asks the core about every key press and shows a placeholder while empty.
@interface CaptureEditor : NSTextView
// Without a delegate the text view handles every key itself.
@property(nonatomic, nullable) navora::CaptureEditorDelegate* captureDelegate;
@property(nonatomic, copy) NSString* placeholder;
@property(nonatomic, strong) NSColor* placeholderColor;
@end

NS_ASSUME_NONNULL_END

namespace {

void setUpPlaceholder(CaptureEditor* editor) {
  editor.placeholder = @"";
  editor.placeholderColor = [NSColor placeholderTextColor];
}

}  // namespace

@implementation CaptureEditor

- (BOOL)becomeFirstResponder {
  const BOOL agreed = [super becomeFirstResponder];
  if (agreed && self.captureDelegate != nullptr) self.captureDelegate->editorDidChangeFocus(true);
  return agreed;
}

- (BOOL)resignFirstResponder {
  const BOOL agreed = [super resignFirstResponder];
  if (agreed && self.captureDelegate != nullptr) self.captureDelegate->editorDidChangeFocus(false);
  return agreed;
}

- (void)drawRect:(NSRect)dirtyRect {
  [super drawRect:dirtyRect];
  if (self.string.length > 0 || [self hasMarkedText]) return;
  const NSPoint origin =
      NSMakePoint(self.textContainerInset.width + self.textContainer.lineFragmentPadding,
                  self.textContainerInset.height);
  NSFont* font = self.font != nil ? self.font
                                  : [NSFont systemFontOfSize:navora::CaptureEditorStyle().fontSize];
  [self.placeholder drawAtPoint:origin
                 withAttributes:@{
                   NSFontAttributeName : font,
                   NSForegroundColorAttributeName : self.placeholderColor,
                 }];
}

- (void)keyDown:(NSEvent*)event {
  if (self.captureDelegate != nullptr &&
      self.captureDelegate->editorKeyDown(navora::toKeyEvent(event), [self hasMarkedText])) {
    return;
  }
  [super keyDown:event];
}

// AppKit offers combinations with the Command key here before it calls -keyDown:.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  if (self.captureDelegate != nullptr &&
      self.captureDelegate->editorKeyEquivalent(navora::toKeyEvent(event), [self hasMarkedText])) {
    return YES;
  }
  return [super performKeyEquivalent:event];
}

// The action of Shift+Tab: moves the focus, because Tab alone inserts a tab.
- (void)insertBacktab:(nullable id)sender {
  [self.window selectPreviousKeyView:sender];
}

- (instancetype)initWithFrame:(NSRect)frame textContainer:(nullable NSTextContainer*)container {
  self = [super initWithFrame:frame textContainer:container];
  if (self != nil) setUpPlaceholder(self);
  return self;
}

- (nullable instancetype)initWithCoder:(NSCoder*)coder {
  self = [super initWithCoder:coder];
  if (self != nil) setUpPlaceholder(self);
  return self;
}

@end

@interface NavoraCaptureEditorForwarder : NSObject <NSTextViewDelegate>
@property(nonatomic, nullable) navora::CaptureEditorDelegate* delegate;
@end

@implementation NavoraCaptureEditorForwarder

- (void)textDidChange:(NSNotification*)notification {
  if (self.delegate != nullptr) self.delegate->editorTextDidChange();
}

@end

namespace navora {

namespace {

constexpr NSRect initialFrame{{0, 0}, {752, 44}};
constexpr CGFloat unbounded = std::numeric_limits<CGFloat>::max();

CaptureEditor* makeEditor() {
  CaptureEditor* editor = [[CaptureEditor alloc] initWithFrame:initialFrame];
  editor.richText = NO;
  editor.font = [NSFont systemFontOfSize:CaptureEditorStyle().fontSize];
  editor.backgroundColor = [NSColor clearColor];
  editor.drawsBackground = NO;
  editor.textColor = [NSColor labelColor];
  editor.insertionPointColor = [NSColor labelColor];
  editor.textContainerInset = NSMakeSize(0, CapturePanelLayout::editorInset);
  editor.verticallyResizable = YES;
  editor.horizontallyResizable = NO;
  editor.maxSize = NSMakeSize(unbounded, unbounded);
  editor.autoresizingMask = NSViewWidthSizable;
  editor.textContainer.widthTracksTextView = YES;
  editor.textContainer.size = NSMakeSize(initialFrame.size.width, unbounded);
  editor.allowsUndo = YES;
  return editor;
}

NSScrollView* makeScrollView(NSTextView* editor) {
  NSScrollView* scroll = [[NSScrollView alloc] initWithFrame:initialFrame];
  scroll.drawsBackground = NO;
  scroll.hasVerticalScroller = YES;
  scroll.autohidesScrollers = YES;
  scroll.scrollerStyle = NSScrollerStyleOverlay;
  scroll.borderType = NSNoBorder;
  scroll.documentView = editor;
  return scroll;
}

NSFont* toNSFont(const CaptureEditorStyle& style) {
  NSFont* font = nil;
  switch (style.family) {
    case FontFamily::sans:
      break;
    case FontFamily::serif:
      font = [NSFont fontWithName:@"Iowan Old Style" size:style.fontSize];
      break;
    case FontFamily::mono:
      font = [NSFont monospacedSystemFontOfSize:style.fontSize weight:NSFontWeightRegular];
      break;
  }
  return font != nil ? font : [NSFont systemFontOfSize:style.fontSize];
}

void setLineHeight(NSTextView* editor, double lineHeight) {
  NSMutableParagraphStyle* paragraph = [[NSMutableParagraphStyle alloc] init];
  paragraph.minimumLineHeight = lineHeight;
  editor.defaultParagraphStyle = paragraph;
  NSMutableDictionary<NSAttributedStringKey, id>* typing = [editor.typingAttributes mutableCopy];
  typing[NSParagraphStyleAttributeName] = paragraph;
  editor.typingAttributes = typing;
  NSTextStorage* text = editor.textStorage;
  [text addAttribute:NSParagraphStyleAttributeName
               value:paragraph
               range:NSMakeRange(0, text.length)];
}

}  // namespace

MacCaptureEditor::MacCaptureEditor(CaptureEditorDelegate& delegate)
    : editor_(makeEditor()),
      scroll_(makeScrollView(editor_)),
      forwarder_([[NavoraCaptureEditorForwarder alloc] init]) {
  forwarder_.delegate = &delegate;
  editor_.delegate = forwarder_;
  editor_.captureDelegate = &delegate;
}

MacCaptureEditor::~MacCaptureEditor() {
  forwarder_.delegate = nullptr;
  editor_.delegate = nil;
  editor_.captureDelegate = nullptr;
}

std::string MacCaptureEditor::text() const {
  // Pasted text keeps the line breaks of its source.
  NSString* text = [editor_.string stringByReplacingOccurrencesOfString:@"\r\n" withString:@"\n"];
  return toString([text stringByReplacingOccurrencesOfString:@"\r" withString:@"\n"]);
}

void MacCaptureEditor::setText(const std::string& text) {
  editor_.string = toNSString(text);
  [editor_.undoManager removeAllActions];
}

void MacCaptureEditor::setEditable(bool editable) {
  editor_.editable = editable;
}

void MacCaptureEditor::setStyle(const CaptureEditorStyle& style) {
  editor_.font = toNSFont(style);
  editor_.textColor = toNSColor(style.ink);
  editor_.insertionPointColor = toNSColor(style.caret);
  editor_.placeholderColor = toNSColor(style.placeholder);
  setLineHeight(editor_, style.lineHeight);
  editor_.needsDisplay = YES;
}

void MacCaptureEditor::setPlaceholder(const std::string& text) {
  editor_.placeholder = toNSString(text);
  editor_.needsDisplay = YES;
}

void MacCaptureEditor::setAccessibilityLabel(const std::string& label) {
  editor_.accessibilityLabel = toNSString(label);
}

// Marked text is part of the text already: accepts it, then ends the input method's session, which
// would otherwise go on composing it.
void MacCaptureEditor::commitComposition() {
  if (![editor_ hasMarkedText]) return;
  [editor_ unmarkText];
  [editor_.inputContext discardMarkedText];
}

void MacCaptureEditor::makeFirstResponder() {
  [editor_.window makeFirstResponder:editor_];
}

void MacCaptureEditor::moveCaretToEnd() {
  const NSRange end = NSMakeRange(editor_.string.length, 0);
  editor_.selectedRange = end;
  [editor_ scrollRangeToVisible:end];
}

double MacCaptureEditor::textHeight(double) {
  // The text wraps at the editor's width, so the panel's constraints must be resolved first.
  [editor_.window.contentView layoutSubtreeIfNeeded];
  // Reading layoutManager switches a TextKit 2 view to TextKit 1.
  NSLayoutManager* layout = editor_.layoutManager;
  NSTextContainer* container = editor_.textContainer;
  [layout ensureLayoutForTextContainer:container];
  return std::max([layout usedRectForTextContainer:container].size.height,
                  NSMaxY(layout.extraLineFragmentRect));
}

}  // namespace navora
