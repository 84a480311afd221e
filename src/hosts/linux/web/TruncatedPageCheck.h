#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/PlatformError.h"

namespace navora {

// Finds out whether a page was cut off by a broken connection: WebKitGTK (2.50) calls a page
// finished that has fewer bytes than its Content-Length promises, and leaves the user before half a
// page or an empty one. Can go when the engine reports such loads as failed.
class TruncatedPageCheck {
 public:
  using Report = std::function<void(const PlatformError&)>;

  TruncatedPageCheck() = default;
  ~TruncatedPageCheck() { cancel(); }

  TruncatedPageCheck(const TruncatedPageCheck&) = delete;
  TruncatedPageCheck& operator=(const TruncatedPageCheck&) = delete;

  // Calls `report` later if the page that `view` has just finished is incomplete, unless another
  // page is checked or the check is cancelled first. Pages without a promised length pass.
  void check(WebKitWebView* view, Report report);
  void cancel();

 private:
  GObjectPtr<GCancellable> pending_;
};

}  // namespace navora
