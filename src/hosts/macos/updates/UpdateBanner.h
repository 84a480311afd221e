#pragma once

#import <AppKit/AppKit.h>

#include "platform/UpdateBannerView.h"

NS_ASSUME_NONNULL_BEGIN

// The card that shows the state of an update. Created hidden and empty, outside any view.
@interface UpdateBanner : NSVisualEffectView
// Reports every pressed button to the delegate, if it has one.
@property(nonatomic, nullable) navora::UpdateBannerViewDelegate* delegate;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
- (void)showContent:(const navora::UpdateBannerContent&)content;
- (void)showProgress:(navora::UpdateBannerProgress)progress;
// The buttons' actions, in the order of UpdateBannerButton.
- (void)accept;
- (void)deferUpdate;
- (void)ignoreUpdate;
- (void)closeUpdate;
@end

NS_ASSUME_NONNULL_END
