#pragma once

// The framework's umbrella header. Everything here is as sparkle-project.org documents version 2,
// and for the main thread only.
#import <Sparkle/SPUUpdater.h>
#import <Sparkle/SPUUserDriver.h>
#import <Sparkle/SUAppcastItem.h>
