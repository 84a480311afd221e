#pragma once

#import <AppKit/AppKit.h>

#include "platform/CapturePanelView.h"

// The panel's content view: the card behind the editor, painted by the core.
@interface CaptureSurface : NSView
// Null paints nothing.
@property(nonatomic, nullable) navora::CapturePanelDelegate* delegate;
@end
