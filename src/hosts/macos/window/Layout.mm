#include "hosts/macos/window/Layout.h"

namespace navora {

void addFilling(NSView* _Nonnull view, NSView* _Nonnull container) {
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [container addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:container.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:container.trailingAnchor],
    [view.topAnchor constraintEqualToAnchor:container.topAnchor],
    [view.bottomAnchor constraintEqualToAnchor:container.bottomAnchor],
  ]];
}

}  // namespace navora
