#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Takes out of the page's context menu what the application does not do: opening a second window,
// and downloads that the engine starts by itself, which follow redirects to any host unasked.
class PageContextMenu {
 public:
  explicit PageContextMenu(WebKitWebView* view);

 private:
  static gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*,
                                WebKitHitTestResult*, gpointer);

  SignalConnection signal_;
};

}  // namespace navora
