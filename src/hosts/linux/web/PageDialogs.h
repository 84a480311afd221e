#pragma once

#include <memory>
#include <vector>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/PageBridge.h"
#include "platform/PageDialogDelegate.h"

namespace navora {

// Converts the engine's dialog and file chooser requests for the PageDialogDelegate. The source is
// an unknown frame unless it is proven to be the top frame. Pages have no permissions: each request
// for one is denied without asking the user.
class PageDialogs {
 public:
  // Both arguments must outlive this object.
  PageDialogs(WebKitWebView* view, PageBridge& bridge);

  PageDialogs(const PageDialogs&) = delete;
  PageDialogs& operator=(const PageDialogs&) = delete;

  void setDelegate(PageDialogDelegate* delegate) { delegate_ = delegate; }

 private:
  static gboolean onScriptDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer self);
  static gboolean onRunFileChooser(WebKitWebView*, WebKitFileChooserRequest* request,
                                   gpointer self);
  static gboolean onPrint(WebKitWebView*, WebKitPrintOperation*, gpointer);
  static gboolean onAuthenticate(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer);
  static gboolean onPermissionRequest(WebKitWebView*, WebKitPermissionRequest* request, gpointer);

  FrameInfo topFrame() const;
  void runDialog(WebKitScriptDialog* dialog);
  void askDelegate(const std::shared_ptr<WebKitScriptDialog>& held);
  void runFileChooser(WebKitFileChooserRequest* request);

  WebKitWebView* view_;
  PageBridge& bridge_;
  PageDialogDelegate* delegate_ = nullptr;
  std::vector<SignalConnection> signals_;
};

}  // namespace navora
