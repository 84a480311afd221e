#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// The web context: the engine's processes, and the cookies and storage that are kept between
// starts. Web processes run in the engine's sandbox if bwrap works on this system; otherwise the
// constructor says on standard error that they do not.
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
