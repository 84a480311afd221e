#pragma once

#import <Foundation/Foundation.h>

#include "platform/HttpSession.h"
#include "support/Lifetime.h"

@class CaptureTransport;

namespace navora {

class MacHttpSession final : public HttpSession {
 public:
  explicit MacHttpSession(const HttpSessionConfiguration& configuration);
  ~MacHttpSession() override;
  MacHttpSession(const MacHttpSession&) = delete;
  MacHttpSession& operator=(const MacHttpSession&) = delete;

  void send(const HttpRequest& request, Completion completion) override;

 private:
  CaptureTransport* _Nonnull transport_;
  NSURLSession* _Nonnull session_;
  Lifetime lifetime_;
};

}  // namespace navora
