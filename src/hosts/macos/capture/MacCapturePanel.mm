#include "hosts/macos/capture/MacCapturePanel.h"

#include "hosts/macos/graphics/CoreGraphicsCanvas.h"
#include "hosts/macos/system/AppKitConversions.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/KeyValueObservation.h"

// AppKit lets a window without a title bar become key or main only if its class says so.
@interface CapturePanel : NSPanel
@end

@implementation CapturePanel

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return YES;
}

@end

// The panel's content view: the card behind the editor, painted by the core.
@interface CaptureSurface : NSView
// A view without a delegate stays empty.
@property(nonatomic, nullable) navora::CapturePanelDelegate* delegate;
@end

@implementation CaptureSurface

- (void)drawRect:(NSRect)dirtyRect {
  if (self.delegate == nullptr) return;
  navora::CoreGraphicsCanvas canvas;
  self.delegate->paintSurface(canvas, navora::toRectangle(self.bounds).size());
}

@end

// The round submit button, painted by the core.
@interface CaptureSubmitButton : NSButton
// A button without a delegate stays empty.
@property(nonatomic, nullable) navora::CapturePanelDelegate* delegate;
@end

@implementation CaptureSubmitButton

// Buttons are flipped by default, but the core's y axis points up.
- (BOOL)isFlipped {
  return NO;
}

- (void)drawRect:(NSRect)dirtyRect {
  if (self.delegate == nullptr) return;
  navora::CoreGraphicsCanvas canvas;
  self.delegate->paintSubmitButton(canvas, navora::toRectangle(self.bounds).size());
}

// NSTrackingInVisibleRect makes AppKit ignore the rectangle. NSTrackingActiveAlways, because
// another application is usually the active one while the panel is in use.
- (void)updateTrackingAreas {
  [super updateTrackingAreas];
  for (NSTrackingArea* area in self.trackingAreas) {
    [self removeTrackingArea:area];
  }
  [self addTrackingArea:[[NSTrackingArea alloc]
                            initWithRect:NSZeroRect
                                 options:NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways |
                                         NSTrackingInVisibleRect
                                   owner:self
                                userInfo:nil]];
}

- (void)mouseEntered:(NSEvent*)event {
  if (self.delegate != nullptr) self.delegate->submitButtonHovered(true);
}

- (void)mouseExited:(NSEvent*)event {
  if (self.delegate != nullptr) self.delegate->submitButtonHovered(false);
}

@end

@interface NavoraCapturePanelForwarder : NSObject <NSWindowDelegate>
@property(nonatomic, nullable) navora::CapturePanelDelegate* delegate;
// Set while orderOut() runs, to ignore the loss of focus that it causes.
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
  panel.autorecalculatesKeyViewLoop = YES;
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
  appearanceObservation_ =
      observeKeyPath([NSApplication sharedApplication], @"effectiveAppearance",
                     [this, &delegate] { delegate.systemAppearanceDidChange(systemIsDark()); });
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

// The application's own appearance is never set, so its effective one is the desktop's.
bool MacCapturePanel::systemIsDark() const {
  NSAppearance* appearance = [NSApplication sharedApplication].effectiveAppearance;
  NSAppearanceName match = [appearance
      bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
  return [match isEqualToString:NSAppearanceNameDarkAqua];
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

// -orderFront: leaves the windows of an inactive application below those of the active one.
void MacCapturePanel::orderFront() {
  [panel_ orderFrontRegardless];
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
  return [message_.stringValue boundingRectWithSize:NSMakeSize(width, maximumMessageHeight)
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
