#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/PlatformError.h"

namespace navora {

// The error of a transfer that ended before all announced bytes had arrived.
PlatformError connectionLost();

// Detects a page that was truncated by a broken connection. WebKitGTK (2.50) reports a page with
// fewer bytes than its Content-Length as finished. Remove this class when the engine reports such a
// load as failed.
class TruncatedPageCheck {
 public:
  using Report = std::function<void(const PlatformError&)>;

  TruncatedPageCheck() = default;
  ~TruncatedPageCheck() { cancel(); }

  TruncatedPageCheck(const TruncatedPageCheck&) = delete;
  TruncatedPageCheck& operator=(const TruncatedPageCheck&) = delete;

  // Calls `report` once, after this function has returned, if the page that `view` has just
  // finished is truncated; never if check() or cancel() is called first. A page without
  // Content-Length is complete.
  void check(WebKitWebView* view, Report report);
  void cancel();

 private:
  GObjectPtr<GCancellable> pending_;
};

}  // namespace navora
