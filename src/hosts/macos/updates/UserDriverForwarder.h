#pragma once

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

// Sparkle's user driver, which forwards every step to the core's. Without that one it declines or
// acknowledges whatever Sparkle asks.
@interface NavoraUserDriverForwarder : NSObject <SPUUserDriver>
@property(nonatomic, nullable) navora::UpdaterUserDriver* userDriver;
@end
