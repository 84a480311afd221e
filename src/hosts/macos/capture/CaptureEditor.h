#pragma once

#import <AppKit/AppKit.h>

#include "platform/CaptureEditorView.h"

NS_ASSUME_NONNULL_BEGIN

// The text view of the capture panel. Asks the core about every key press, and shows a placeholder
// while it is empty.
@interface CaptureEditor : NSTextView
// Null leaves every key to the text view.
@property(nonatomic, nullable) navora::CaptureEditorDelegate* captureDelegate;
@property(nonatomic, copy) NSString* placeholder;
@property(nonatomic, strong) NSColor* placeholderColor;
@end

NS_ASSUME_NONNULL_END
