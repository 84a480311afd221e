#pragma once

// The framework's umbrella header, as sparkle-project.org documents version 2. Everything here must
// be used on the main thread.
#import <Sparkle/SPUUpdater.h>
#import <Sparkle/SPUUserDriver.h>
#import <Sparkle/SUAppcastItem.h>
