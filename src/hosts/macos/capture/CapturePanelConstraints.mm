#include "hosts/macos/capture/CapturePanelConstraints.h"

namespace navora {

namespace {

// In effect until the controller's first layout: the smallest editor and one line of message.
constexpr CapturePanelLayout initialLayout{.padding = 24, .editorHeight = 58, .messageHeight = 14};

NSArray<NSLayoutConstraint*>* makePaddings(NSView* surface, NSView* scroll, NSView* button) {
  const CGFloat padding = initialLayout.padding;
  return @[
    [scroll.leadingAnchor constraintEqualToAnchor:surface.leadingAnchor constant:padding],
    [scroll.topAnchor constraintEqualToAnchor:surface.topAnchor constant:padding],
    [scroll.trailingAnchor constraintEqualToAnchor:surface.trailingAnchor constant:-padding],
    [button.trailingAnchor constraintEqualToAnchor:surface.trailingAnchor constant:-padding],
    [button.bottomAnchor constraintEqualToAnchor:surface.bottomAnchor constant:-padding],
  ];
}

void addSubviews(NSView* surface, NSArray<NSView*>* views) {
  for (NSView* view in views) {
    view.translatesAutoresizingMaskIntoConstraints = NO;
    [surface addSubview:view];
  }
}

NSArray<NSLayoutConstraint*>* makeFixed(NSView* scroll, NSView* message, NSView* button) {
  return @[
    [button.widthAnchor constraintEqualToConstant:CapturePanelLayout::buttonSize],
    [button.heightAnchor constraintEqualToConstant:CapturePanelLayout::buttonSize],
    [message.leadingAnchor constraintEqualToAnchor:scroll.leadingAnchor
                                          constant:CapturePanelLayout::messageIndent],
    [message.trailingAnchor
        constraintLessThanOrEqualToAnchor:button.leadingAnchor
                                 constant:-CapturePanelLayout::messageButtonGap],
    [message.centerYAnchor constraintEqualToAnchor:button.centerYAnchor],
  ];
}

}  // namespace

CapturePanelConstraints::CapturePanelConstraints(NSView* _Nonnull surface,
                                                 NSScrollView* _Nonnull scroll,
                                                 NSTextField* _Nonnull message,
                                                 NSButton* _Nonnull button)
    : editorHeight_([scroll.heightAnchor constraintEqualToConstant:initialLayout.editorHeight]),
      messageHeight_([message.heightAnchor constraintEqualToConstant:initialLayout.messageHeight]),
      paddings_(makePaddings(surface, scroll, button)) {
  // Constraints between views can be activated only once the views have a common ancestor.
  addSubviews(surface, @[ scroll, message, button ]);
  [NSLayoutConstraint activateConstraints:@[ editorHeight_, messageHeight_ ]];
  [NSLayoutConstraint activateConstraints:paddings_];
  [NSLayoutConstraint activateConstraints:makeFixed(scroll, message, button)];
}

void CapturePanelConstraints::apply(const CapturePanelLayout& layout) {
  editorHeight_.constant = layout.editorHeight;
  messageHeight_.constant = layout.messageHeight;
  const double padding = layout.padding;
  const double constants[] = {padding, padding, -padding, -padding, -padding};
  NSUInteger index = 0;
  for (NSLayoutConstraint* constraint in paddings_) {
    constraint.constant = constants[index++];
  }
}

}  // namespace navora
