#pragma once

#import <AppKit/AppKit.h>

#include "platform/ErrorView.h"

@class NavoraErrorViewTarget;

namespace navora {

class MacMainWindow;

class MacErrorView final : public ErrorView {
 public:
  // The window must outlive the view.
  MacErrorView(MacMainWindow& window, const ErrorViewDescription& description);
  ~MacErrorView() override;
  MacErrorView(const MacErrorView&) = delete;
  MacErrorView& operator=(const MacErrorView&) = delete;

  void setDetail(const std::string& text) override;
  void setHidden(bool hidden) override;
  bool isHidden() const override;

 private:
  MacMainWindow& window_;
  NSVisualEffectView* _Nonnull overlay_;
  NSTextField* _Nonnull detail_;
  NavoraErrorViewTarget* _Nonnull target_;
};

}  // namespace navora
