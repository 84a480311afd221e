#pragma once

#import <Foundation/Foundation.h>

#include <map>

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

  RequestId send(const HttpRequest& request, Completion completion) override;
  void cancel(RequestId request) override;

 private:
  RequestId failLater(Completion completion);

  CaptureTransport* _Nonnull transport_;
  NSURLSession* _Nonnull session_;
  // Requests without a task, which fail. Their identifiers count down from the largest, those of
  // tasks up from 1.
  std::map<RequestId, Completion> failing_;
  RequestId lastFailing_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
