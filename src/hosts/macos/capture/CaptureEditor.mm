#include "hosts/macos/capture/CaptureEditor.h"

#include "hosts/macos/system/AppKitConversions.h"

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

// Combinations with the Command key come here before -keyDown:.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
  if (self.captureDelegate != nullptr &&
      self.captureDelegate->editorKeyEquivalent(navora::toKeyEvent(event), [self hasMarkedText])) {
    return YES;
  }
  return [super performKeyEquivalent:event];
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
