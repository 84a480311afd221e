#pragma once

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/PageActions.h"

namespace navora {

// Removes from the page's context menu what the application does not support: a second window, and
// downloads that the engine starts itself, which would follow redirects to any host without a
// decision. Reports the choice of its "Open Link" item, which the engine does not distinguish from
// a script's navigation.
class PageContextMenu {
 public:
  // `actions` must outlive this object.
  PageContextMenu(WebKitWebView* view, PageActions& actions);

 private:
  static gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*,
                                WebKitHitTestResult*, gpointer self);
  static void onLinkChosen(GAction*, GVariant*, gpointer self);

  void removeUnsupportedItems(WebKitContextMenu* menu);

  PageActions& actions_;
  SignalConnection signal_;
  // The present menu's item.
  SignalConnection linkChosen_;
};

}  // namespace navora
