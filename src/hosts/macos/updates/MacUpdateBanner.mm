#include "hosts/macos/updates/MacUpdateBanner.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/updates/UpdateBanner.h"
#include "hosts/macos/window/MacMainWindow.h"

namespace navora {

namespace {

NSLayoutConstraint* makeWidth(NSView* banner) {
  NSLayoutConstraint* width =
      [banner.widthAnchor constraintEqualToConstant:UpdateBannerLayout::width];
  // A higher priority would stop the user from making the window narrower than the banner.
  width.priority = NSLayoutPriorityWindowSizeStayPut - 1;
  return width;
}

}  // namespace

MacUpdateBanner::MacUpdateBanner() : banner_([[::UpdateBanner alloc] initWithFrame:NSZeroRect]) {}

MacUpdateBanner::~MacUpdateBanner() {
  banner_.delegate = nullptr;
  [banner_ removeFromSuperview];
}

void MacUpdateBanner::setDelegate(UpdateBannerViewDelegate* _Nullable delegate) {
  banner_.delegate = delegate;
}

void MacUpdateBanner::attach(MainWindow& window) {
  // `window` must be made by MacPlatform.
  NSView* content = static_cast<MacMainWindow&>(window).nsWindow().contentView;
  banner_.translatesAutoresizingMaskIntoConstraints = NO;
  [content addSubview:banner_];
  [NSLayoutConstraint activateConstraints:@[
    [banner_.trailingAnchor constraintEqualToAnchor:content.trailingAnchor
                                           constant:-UpdateBannerLayout::trailingDistance],
    [banner_.topAnchor constraintEqualToAnchor:content.topAnchor
                                      constant:UpdateBannerLayout::topDistance],
    [banner_.leadingAnchor
        constraintGreaterThanOrEqualToAnchor:content.leadingAnchor
                                    constant:UpdateBannerLayout::minimumLeadingDistance],
    makeWidth(banner_),
  ]];
}

void MacUpdateBanner::setHidden(bool hidden) {
  banner_.hidden = hidden;
}

bool MacUpdateBanner::isHidden() const {
  return banner_.hidden;
}

void MacUpdateBanner::setContent(const UpdateBannerContent& content) {
  [banner_ showContent:content];
}

void MacUpdateBanner::setProgress(UpdateBannerProgress progress) {
  [banner_ showProgress:progress];
}

void MacUpdateBanner::announce(const std::string& text) {
  NSAccessibilityPostNotificationWithUserInfo(
      banner_, NSAccessibilityAnnouncementRequestedNotification, @{
        NSAccessibilityAnnouncementKey : toNSString(text),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityMedium),
      });
}

}  // namespace navora
