#pragma once

#import <AppKit/AppKit.h>

#include "platform/CapturePanelView.h"

// The round submit button, painted by the core.
@interface CaptureSubmitButton : NSButton
// Null paints nothing.
@property(nonatomic, nullable) navora::CapturePanelDelegate* delegate;
@end
