#pragma once

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

// What Sparkle reports to, on behalf of the core's user driver. Agrees to nothing without one.
@interface NavoraUserDriverForwarder : NSObject <SPUUserDriver>
@property(nonatomic, nullable) navora::UpdaterUserDriver* userDriver;
@end
