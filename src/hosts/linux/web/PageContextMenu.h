#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Removes from the page's context menu what the application does not support: a second window, and
// downloads that the engine starts itself, which would follow redirects to any host without a
// decision.
class PageContextMenu {
 public:
  explicit PageContextMenu(WebKitWebView* view);

 private:
  static gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*,
                                WebKitHitTestResult*, gpointer);

  SignalConnection signal_;
};

}  // namespace navora
