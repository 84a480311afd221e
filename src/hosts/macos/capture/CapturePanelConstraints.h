#pragma once

#import <AppKit/AppKit.h>

#include "platform/CapturePanelView.h"

namespace navora {

// The layout of the panel's parts within its surface.
class CapturePanelConstraints {
 public:
  // Adds the other three views to `surface` and activates their constraints.
  CapturePanelConstraints(NSView* _Nonnull surface, NSScrollView* _Nonnull scroll,
                          NSTextField* _Nonnull message, NSButton* _Nonnull button);

  void apply(const CapturePanelLayout& layout);

 private:
  NSLayoutConstraint* _Nonnull editorHeight_;
  NSLayoutConstraint* _Nonnull messageHeight_;
  // In this order: leading, top and trailing edge of the scroll view, trailing and bottom edge of
  // the button.
  NSArray<NSLayoutConstraint*>* _Nonnull paddings_;
};

}  // namespace navora
