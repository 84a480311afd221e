#include "hosts/macos/capture/MacCapturePanel.h"

#include "hosts/macos/capture/CapturePanel.h"
#include "hosts/macos/capture/CaptureSubmitButton.h"
#include "hosts/macos/capture/CaptureSurface.h"
#include "hosts/macos/system/AppKitConversions.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/window/SystemAppearance.h"

@interface NavoraCapturePanelForwarder : NSObject <NSWindowDelegate>
@property(nonatomic, nullable) navoraCapturePanelDelegate* delegate;
// While the panel loses the focus because the core orders it out.
@property(nonatomic) BOOL orderingOut;
- (void)submitAction;
@end

@implementation NavoraCapturePanelForwarder

- (void)windowDidResignKey:(NSNotification*)notification {
  if (self.delegate != nullptr && !self.orderingOut) self.delegate->panelDidResignKey();
}

- (void)submitAction {
  if (self.delegate != nullptr) self.delegate->submitButtonPressed();
}

@end

namespace navora {

namespace {

NSFont* messageFont(NSTextField* _Nullable message) {
  NSFont* font = message.font;
  return font != nil ? font : [NSFont systemFontOfSize:MacCapturePanel::messageFontSize];
}

NSTextField* makeMessage() {
  NSTextField* message = [NSTextField wrappingLabelWithString:@""];
  message.font = messageFont(nil);
  return message;
}

::CaptureSubmitButton* makeSubmitButton(NavoraCapturePanelForwarder* target) {
  ::CaptureSubmitButton* button = [[::CaptureSubmitButton alloc] initWithFrame:NSZeroRect];
  button.title = @"";
  button.bordered = NO;
  button.target = target;
  button.action = @selector(submitAction);
  button.enabled = NO;
  return button;
}

CapturePanel* makePanel(Size contentSize, NSView* contentView) {
  CapturePanel* panel = [[CapturePanel alloc]
      initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                styleMask:NSWindowStyleMaskNonactivatingPanel
                  backing:NSBackingStoreBuffered
                    defer:NO];
  panel.titleVisibility = NSWindowTitleHidden;
  panel.floatingPanel = YES;
  panel.level = NSFloatingWindowLevel;
  panel.opaque = NO;
  panel.backgroundColor = [NSColor clearColor];
  panel.hasShadow = YES;
  panel.releasedWhenClosed = NO;
  panel.hidesOnDeactivate = NO;
  panel.collectionBehavior =
      NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;
  panel.movableByWindowBackground = YES;
  panel.contentView = contentView;
  return panel;
}

}  // namespace

MacCapturePanel::MacCapturePanel(Size contentSize, CapturePanelDelegate& delegate)
    : forwarder_([[NavoraCapturePanelForwarder alloc] init]),
      message_(makeMessage()),
      submitButton_(makeSubmitButton(forwarder_)),
      surface_([[::CaptureSurface alloc] initWithFrame:NSZeroRect]),
      panel_(makePanel(contentSize, surface_)),
      editor_(delegate),
      constraints_(surface_, editor_.nsView(), message_, submitButton_) {
  forwarder_.delegate = &delegate;
  submitButton_.delegate = &delegate;
  surface_.delegate = &delegate;
  panel_.delegate = forwarder_;
  appearanceObservation_ = observeSystemAppearance(
      [&delegate] { delegate.systemAppearanceDidChange(navora::systemIsDark()); });
}

MacCapturePanel::~MacCapturePanel() {
  forwarder_.delegate = nullptr;
  submitButton_.delegate = nullptr;
  surface_.delegate = nullptr;
  panel_.delegate = nil;
  [panel_ orderOut:nil];
}

void MacCapturePanel::setTitle(const std::string& title) {
  panel_.title = toNSString(title);
}

void MacCapturePanel::setAppearance(WindowAppearance appearance) {
  panel_.appearance = toNSAppearance(appearance);
}

bool MacCapturePanel::systemIsDark() const {
  return navora::systemIsDark();
}

bool MacCapturePanel::isVisible() const {
  return panel_.visible;
}

Rectangle MacCapturePanel::frame() const {
  return toRectangle(panel_.frame);
}

void MacCapturePanel::setFrame(const Rectangle& frame) {
  [panel_ setFrame:toNSRect(frame) display:YES];
  [surface_ layoutSubtreeIfNeeded];
}

std::optional<Rectangle> MacCapturePanel::screenVisibleFrame() const {
  NSScreen* screen = panel_.screen;
  return screen == nil ? std::nullopt : std::optional(toRectangle(screen.visibleFrame));
}

void MacCapturePanel::makeKeyAndOrderFront() {
  [panel_ makeKeyAndOrderFront:nil];
}

void MacCapturePanel::orderOut() {
  forwarder_.orderingOut = YES;
  [panel_ orderOut:nil];
  forwarder_.orderingOut = NO;
}

void MacCapturePanel::setMessage(const std::string& text) {
  message_.stringValue = toNSString(text);
}

void MacCapturePanel::setMessageColor(Color color) {
  message_.textColor = toNSColor(color);
}

double MacCapturePanel::messageTextHeight(double width) {
  constexpr double maximumHeight = 100;
  return [message_.stringValue boundingRectWithSize:NSMakeSize(width, maximumHeight)
                                            options:NSStringDrawingUsesLineFragmentOrigin |
                                                    NSStringDrawingUsesFontLeading
                                         attributes:@{NSFontAttributeName : messageFont(message_)}
                                            context:nil]
      .size.height;
}

void MacCapturePanel::setSubmitEnabled(bool enabled) {
  submitButton_.enabled = enabled;
}

void MacCapturePanel::setSubmitOpacity(double opacity) {
  submitButton_.alphaValue = opacity;
}

void MacCapturePanel::setSubmitToolTip(const std::string& text) {
  submitButton_.toolTip = toNSString(text);
}

void MacCapturePanel::setSubmitAccessibilityLabel(const std::string& label) {
  submitButton_.accessibilityLabel = toNSString(label);
}

void MacCapturePanel::setLayout(const CapturePanelLayout& layout) {
  constraints_.apply(layout);
}

void MacCapturePanel::redrawSurface() {
  surface_.needsDisplay = YES;
}

void MacCapturePanel::redrawSubmitButton() {
  submitButton_.needsDisplay = YES;
}

}  // namespace navora
