#include "hosts/macos/updates/UpdateBanner.h"

#import <QuartzCore/QuartzCore.h>

#include "hosts/macos/system/Conversions.h"
#include "support/FatalError.h"

using navora::UpdateBannerButton;
using navora::UpdateBannerProgress;
using Layout = navora::UpdateBannerLayout;

namespace {

NSTextField* makeTitle() {
  NSTextField* title = [NSTextField labelWithString:@""];
  title.font = [NSFont systemFontOfSize:Layout::titleFontSize weight:NSFontWeightSemibold];
  title.lineBreakMode = NSLineBreakByTruncatingTail;
  return title;
}

NSTextField* makeDetail() {
  NSTextField* detail = [NSTextField wrappingLabelWithString:@""];
  detail.font = [NSFont systemFontOfSize:Layout::detailFontSize];
  detail.textColor = [NSColor secondaryLabelColor];
  detail.maximumNumberOfLines = Layout::detailLines;
  detail.cell.truncatesLastVisibleLine = YES;
  return detail;
}

NSButton* makeButton(UpdateBanner* banner, SEL action, NSBezelStyle bezelStyle) {
  NSButton* button = [NSButton buttonWithTitle:@"" target:banner action:action];
  button.bezelStyle = bezelStyle;
  return button;
}

NSButton* makePrimary(UpdateBanner* banner) {
  NSButton* button = makeButton(banner, @selector(accept), NSBezelStyleRounded);
  button.controlSize = NSControlSizeRegular;
  button.bezelColor = [NSColor systemRedColor];
  return button;
}

NSButton* makeTertiary(UpdateBanner* banner) {
  NSButton* button = makeButton(banner, @selector(ignoreUpdate), NSBezelStyleInline);
  button.controlSize = NSControlSizeSmall;
  return button;
}

NSButton* makeClose(UpdateBanner* banner) {
  NSButton* button = [NSButton buttonWithTitle:@"" target:banner action:@selector(closeUpdate)];
  button.bordered = NO;
  button.font = [NSFont systemFontOfSize:Layout::closeFontSize];
  return button;
}

NSProgressIndicator* makeProgress() {
  NSProgressIndicator* progress = [[NSProgressIndicator alloc] initWithFrame:NSZeroRect];
  progress.style = NSProgressIndicatorStyleBar;
  progress.minValue = 0;
  progress.maxValue = 1;
  return progress;
}

NSStackView* makeRow(NSArray<NSView*>* views) {
  NSStackView* row = [NSStackView stackViewWithViews:views];
  row.orientation = NSUserInterfaceLayoutOrientationHorizontal;
  row.spacing = Layout::spacing;
  return row;
}

// The title fills the row, which pushes the close button into the corner.
NSStackView* makeHeading(NSTextField* title, NSButton* close) {
  NSStackView* heading = makeRow(@[ title, close ]);
  heading.distribution = NSStackViewDistributionFill;
  return heading;
}

NSStackView* makeColumn(NSArray<NSView*>* views) {
  NSStackView* column = [NSStackView stackViewWithViews:views];
  column.orientation = NSUserInterfaceLayoutOrientationVertical;
  column.alignment = NSLayoutAttributeLeading;
  column.spacing = Layout::spacing;
  return column;
}

void letTextYield(NSTextField* text) {
  [text setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                 forOrientation:NSLayoutConstraintOrientationHorizontal];
}

void fillWithInsets(NSStackView* column, NSView* card) {
  column.translatesAutoresizingMaskIntoConstraints = NO;
  [card addSubview:column];
  [NSLayoutConstraint activateConstraints:@[
    [column.leadingAnchor constraintEqualToAnchor:card.leadingAnchor
                                         constant:Layout::horizontalInset],
    [column.trailingAnchor constraintEqualToAnchor:card.trailingAnchor
                                          constant:-Layout::horizontalInset],
    [column.topAnchor constraintEqualToAnchor:card.topAnchor constant:Layout::verticalInset],
    [column.bottomAnchor constraintEqualToAnchor:card.bottomAnchor constant:-Layout::verticalInset],
  ]];
}

void setUpCard(UpdateBanner* card) {
  card.material = NSVisualEffectMaterialPopover;
  card.state = NSVisualEffectStateActive;
  card.blendingMode = NSVisualEffectBlendingModeWithinWindow;
  card.wantsLayer = YES;
  card.layer.cornerRadius = Layout::cornerRadius;
  card.layer.masksToBounds = YES;
  card.layer.borderWidth = Layout::borderWidth;
  card.hidden = YES;
  // Otherwise only the card's contents would be accessible, and its label would never be read out.
  card.accessibilityElement = YES;
  card.accessibilityRole = NSAccessibilityGroupRole;
}

// A layer's colour is static, so it is set again whenever the appearance changes.
void updateBorderColor(NSView* card) {
  [card.effectiveAppearance performAsCurrentDrawingAppearance:^{
    card.layer.borderColor = [NSColor separatorColor].CGColor;
  }];
}

void showButton(NSButton* button, const navora::UpdateBannerContent::Button& content) {
  button.title = navora::toNSString(content.title);
  button.hidden = !content.visible;
  button.enabled = content.enabled;
  button.toolTip = content.toolTip.empty() ? nil : navora::toNSString(content.toolTip);
  // Falls back to the title, which an accessibility label set earlier would otherwise replace.
  button.accessibilityLabel = navora::toNSString(
      content.accessibilityLabel.empty() ? content.title : content.accessibilityLabel);
}

void report(UpdateBanner* banner, UpdateBannerButton button) {
  if (banner.delegate != nullptr) banner.delegate->bannerButtonPressed(button);
}

}  // namespace

@implementation UpdateBanner {
  NSTextField* _title;
  NSTextField* _detail;
  NSButton* _primary;
  NSButton* _secondary;
  NSButton* _tertiary;
  NSButton* _close;
  NSProgressIndicator* _progress;
  NSStackView* _buttons;
}

- (instancetype)initWithFrame:(NSRect)frameRect {
  self = [super initWithFrame:frameRect];
  if (self == nil) return nil;
  setUpCard(self);
  updateBorderColor(self);
  _title = makeTitle();
  _detail = makeDetail();
  _primary = makePrimary(self);
  _secondary = makeButton(self, @selector(deferUpdate), NSBezelStyleRounded);
  _tertiary = makeTertiary(self);
  _close = makeClose(self);
  _progress = makeProgress();
  _buttons = makeRow(@[ _primary, _secondary ]);
  letTextYield(_title);
  letTextYield(_detail);

  NSStackView* heading = makeHeading(_title, _close);
  NSStackView* column = makeColumn(@[ heading, _detail, _progress, _buttons, _tertiary ]);
  fillWithInsets(column, self);
  [NSLayoutConstraint activateConstraints:@[
    [heading.widthAnchor constraintEqualToAnchor:column.widthAnchor],
    [_detail.widthAnchor constraintEqualToAnchor:column.widthAnchor],
    [_progress.widthAnchor constraintEqualToAnchor:column.widthAnchor],
    [_close.widthAnchor constraintEqualToConstant:Layout::closeButtonSize],
    [_close.heightAnchor constraintEqualToConstant:Layout::closeButtonSize],
  ]];
  [self showContent:{}];
  [self showProgress:{}];
  return self;
}

- (nullable instancetype)initWithCoder:(NSCoder*)coder {
  navora::fatalError("init(coder:) has not been implemented", "Updates", __LINE__);
}

- (void)viewDidChangeEffectiveAppearance {
  [super viewDidChangeEffectiveAppearance];
  updateBorderColor(self);
}

- (void)showContent:(const navora::UpdateBannerContent&)content {
  _title.stringValue = navora::toNSString(content.title);
  _detail.stringValue = navora::toNSString(content.detail);
  showButton(_primary, content.button(UpdateBannerButton::primary));
  showButton(_secondary, content.button(UpdateBannerButton::secondary));
  showButton(_tertiary, content.button(UpdateBannerButton::tertiary));
  showButton(_close, content.button(UpdateBannerButton::close));
  // The stack view collapses hidden views only; empty ones would leave a gap.
  _detail.hidden = content.detail.empty();
  _buttons.hidden = _primary.hidden && _secondary.hidden;
  self.accessibilityLabel = navora::toNSString(content.accessibilityLabel);
}

- (void)showProgress:(UpdateBannerProgress)progress {
  _progress.hidden = progress.kind == UpdateBannerProgress::Kind::hidden;
  _progress.indeterminate = progress.kind == UpdateBannerProgress::Kind::indeterminate;
  if (_progress.indeterminate) {
    [_progress startAnimation:nil];
  } else {
    [_progress stopAnimation:nil];
    _progress.doubleValue = progress.fraction;
  }
}

- (void)accept {
  report(self, UpdateBannerButton::primary);
}

- (void)deferUpdate {
  report(self, UpdateBannerButton::secondary);
}

- (void)ignoreUpdate {
  report(self, UpdateBannerButton::tertiary);
}

- (void)closeUpdate {
  report(self, UpdateBannerButton::close);
}

@end
