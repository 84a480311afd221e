#pragma once

#include <string>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/PageActions.h"
#include "platform/WebView.h"

namespace navora {

// Gives the pages of the service `window.webkit.messageHandlers`, and finds out what the engine
// does not tell: which frame a message, a dialog, a new window, a followed link comes from.
//
// WebKitGTK delivers script messages of a page-world handler from every frame alike, and its
// dialogs and navigation decisions name no frame at all. So the real handlers live in an isolated
// script world; the page world only gets proxies, in the top frame of the origin, which announce
// what they do through DOM events. Whatever has not been announced comes from elsewhere.
class PageBridge {
 public:
  // Adds the application's and the bridge's own scripts to `manager`. Messages go to the handler of
  // the configuration.
  PageBridge(WebKitUserContentManager* manager, const WebViewConfiguration& configuration);
  ~PageBridge();

  PageBridge(const PageBridge&) = delete;
  PageBridge& operator=(const PageBridge&) = delete;

  PageActions& actions() { return actions_; }

  struct DialogMessage {
    std::string text;
    // The top frame of the service's page raised the dialog itself.
    bool fromTopFrame = false;
  };
  // Takes the mark off a dialog's message.
  DialogMessage readDialogMessage(const char* message) const;

 private:
  static void onBridgeMessage(WebKitUserContentManager*, WebKitJavascriptResult* result,
                              gpointer self);
  static void onFrameMessage(WebKitUserContentManager*, WebKitJavascriptResult* result,
                             gpointer self);

  void addBridgeScripts(const WebViewConfiguration& configuration);
  void addUserScripts(const WebViewConfiguration& configuration);
  void addScript(const std::string& source, WebKitUserContentInjectedFrames frames,
                 WebKitUserScriptInjectionTime time, const char* world);
  void handleAnnouncement(const Json& source, const Json& announcement);

  GObjectPtr<WebKitUserContentManager> manager_;
  ScriptMessageHandler* handler_;
  // Known to no page: it proves that a dialog passed through the top frame's own functions.
  std::string dialogToken_;
  PageActions actions_;
  SignalConnection bridgeMessages_;
  SignalConnection frameMessages_;
};

}  // namespace navora
