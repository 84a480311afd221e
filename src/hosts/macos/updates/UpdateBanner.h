#pragma once

#import <AppKit/AppKit.h>

#include "platform/UpdateBannerView.h"

NS_ASSUME_NONNULL_BEGIN

// The card that tells about updates, in no view yet, hidden and empty.
@interface UpdateBanner : NSVisualEffectView
// Null is told of no pressed button.
@property(nonatomic, nullable) navora::UpdateBannerViewDelegate* delegate;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
- (void)showContent:(const navora::UpdateBannerContent&)content;
- (void)showProgress:(navora::UpdateBannerProgress)progress;
// What the buttons do, from the first to the closing one.
- (void)accept;
- (void)deferUpdate;
- (void)ignoreUpdate;
- (void)closeUpdate;
@end

NS_ASSUME_NONNULL_END
