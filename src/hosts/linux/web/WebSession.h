#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// The engine's processes and persistent data of this user: cookies and storage survive restarts.
// Web content runs in the engine's sandbox wherever the kernel allows it.
class WebSession {
 public:
  WebSession();

  WebKitWebContext* context() const { return context_.get(); }

 private:
  void keepCookies();
  void enableSandbox(bool isPossible);

  GObjectPtr<WebKitWebsiteDataManager> dataManager_;
  GObjectPtr<WebKitWebContext> context_;
};

}  // namespace navora
