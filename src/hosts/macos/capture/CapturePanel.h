#pragma once

#import <AppKit/AppKit.h>

// A panel without a title bar, which AppKit would keep from the keyboard.
@interface CapturePanel : NSPanel
@end
