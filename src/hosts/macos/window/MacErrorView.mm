#include "hosts/macos/window/MacErrorView.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/window/MacMainWindow.h"

@interface NavoraErrorViewTarget : NSObject {
 @public
  std::function<void()> onRetry;
  std::function<void()> onOpenInBrowser;
}
- (void)reload:(id)sender;
- (void)openInBrowser:(id)sender;
@end

@implementation NavoraErrorViewTarget

// The callbacks are copied because they may destroy the view that owns this object.
- (void)reload:(id)sender {
  const std::function<void()> callback = onRetry;
  if (callback) callback();
}

- (void)openInBrowser:(id)sender {
  const std::function<void()> callback = onOpenInBrowser;
  if (callback) callback();
}

@end

namespace navora {

namespace {

NSVisualEffectView* makeOverlay() {
  NSVisualEffectView* overlay = [[NSVisualEffectView alloc] initWithFrame:NSZeroRect];
  overlay.material = NSVisualEffectMaterialWindowBackground;
  overlay.blendingMode = NSVisualEffectBlendingModeWithinWindow;
  overlay.hidden = YES;
  return overlay;
}

NSTextField* makeTitle(const std::string& text) {
  NSTextField* title = [NSTextField labelWithString:toNSString(text)];
  title.font = [NSFont systemFontOfSize:ErrorViewDescription::titleFontSize
                                 weight:NSFontWeightSemibold];
  return title;
}

NSTextField* makeDetail(const std::string& text) {
  NSTextField* detail = [NSTextField wrappingLabelWithString:toNSString(text)];
  detail.alignment = NSTextAlignmentCenter;
  detail.textColor = [NSColor secondaryLabelColor];
  return detail;
}

NSButton* makeButton(const std::string& title, NavoraErrorViewTarget* target, SEL action) {
  NSButton* button = [NSButton buttonWithTitle:toNSString(title) target:target action:action];
  button.bezelStyle = NSBezelStyleRounded;
  return button;
}

void addCentred(NSStackView* stack, NSView* overlay) {
  stack.translatesAutoresizingMaskIntoConstraints = NO;
  [overlay addSubview:stack];
  [NSLayoutConstraint activateConstraints:@[
    [stack.centerXAnchor constraintEqualToAnchor:overlay.centerXAnchor],
    [stack.centerYAnchor constraintEqualToAnchor:overlay.centerYAnchor],
    [stack.widthAnchor constraintLessThanOrEqualToConstant:ErrorViewDescription::maximumStackWidth],
  ]];
}

}  // namespace

MacErrorView::MacErrorView(MacMainWindow& window, const ErrorViewDescription& description)
    : window_(window),
      overlay_(makeOverlay()),
      detail_(makeDetail(description.detail)),
      target_([[NavoraErrorViewTarget alloc] init]) {
  target_->onRetry = description.onRetry;
  target_->onOpenInBrowser = description.onOpenInBrowser;
  NSButton* retry = makeButton(description.retryTitle, target_, @selector(reload:));
  retry.keyEquivalent = @"\r";
  NSButton* browser = makeButton(description.browserTitle, target_, @selector(openInBrowser:));

  NSStackView* stack =
      [NSStackView stackViewWithViews:@[ makeTitle(description.title), detail_, retry, browser ]];
  stack.orientation = NSUserInterfaceLayoutOrientationVertical;
  stack.alignment = NSLayoutAttributeCenterX;
  stack.spacing = ErrorViewDescription::stackSpacing;
  addCentred(stack, overlay_);
  window.addFilling(overlay_);
}

MacErrorView::~MacErrorView() {
  setHidden(true);
  [overlay_ removeFromSuperview];
}

void MacErrorView::setDetail(const std::string& text) {
  detail_.stringValue = toNSString(text);
}

void MacErrorView::setHidden(bool hidden) {
  if (hidden == isHidden()) return;
  overlay_.hidden = hidden;
  if (hidden) {
    window_.uncoverContent();
  } else {
    window_.coverContent();
  }
}

bool MacErrorView::isHidden() const {
  return overlay_.hidden;
}

}  // namespace navora
