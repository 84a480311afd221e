#pragma once

#import <AppKit/AppKit.h>

#include "platform/CapturePanelView.h"

namespace navora {

// Puts the parts of the panel into its surface and keeps them in place.
class CapturePanelConstraints {
 public:
  CapturePanelConstraints(NSView* _Nonnull surface, NSScrollView* _Nonnull scroll,
                          NSTextField* _Nonnull message, NSButton* _Nonnull button);

  void apply(const CapturePanelLayout& layout);

 private:
  NSLayoutConstraint* _Nonnull editorHeight_;
  NSLayoutConstraint* _Nonnull messageHeight_;
  // Leading and top edge of the scroll view; its trailing edge and the trailing and the bottom edge
  // of the button.
  NSArray<NSLayoutConstraint*>* _Nonnull paddings_;
};

}  // namespace navora
