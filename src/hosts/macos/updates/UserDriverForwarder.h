#pragma once

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

// Sparkle's user driver, which forwards every step to the core's. While `userDriver` is null, it
// declines or acknowledges every request.
@interface NavoraUserDriverForwarder : NSObject <SPUUserDriver>
@property(nonatomic, nullable) navora::UpdaterUserDriver* userDriver;
@end
