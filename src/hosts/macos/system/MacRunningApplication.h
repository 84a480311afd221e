#pragma once

#import <AppKit/AppKit.h>

#include "platform/RunningApplication.h"

namespace navora {

class MacRunningApplication final : public RunningApplication {
 public:
  explicit MacRunningApplication(NSRunningApplication* _Nonnull application)
      : application_(application) {}

  bool isTerminated() const override { return application_.terminated; }
  void activate() override { [application_ activateWithOptions:0]; }

 private:
  NSRunningApplication* _Nonnull application_;
};

}  // namespace navora
