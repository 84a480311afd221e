#pragma once

#import <AppKit/AppKit.h>

namespace navora {

// Adds `view` on top of the other subviews of `container` and pins it to all four edges.
void addFilling(NSView* _Nonnull view, NSView* _Nonnull container);

}  // namespace navora
