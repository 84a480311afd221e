#pragma once

#include <string>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/PageActions.h"
#include "platform/WebView.h"

namespace navora {

// Gives the service's pages `window.webkit.messageHandlers`, and determines which frame a message,
// a dialog, a new window or a followed link comes from, which WebKitGTK (2.50) does not report.
//
// A handler in the page's world would receive messages from every frame alike, and dialogs and
// policy requests name no frame. So the real handlers are registered in an isolated script world.
// In the page's world the top frame of the origin gets proxies, which announce each action through
// DOM events. An action that was not announced is attributed to an unknown frame.
class PageBridge {
 public:
  // Adds the scripts of `configuration` and the bridge's own to `manager`. Messages are delivered
  // to the configuration's handler, which must outlive this object.
  PageBridge(WebKitUserContentManager* manager, const WebViewConfiguration& configuration);
  ~PageBridge();

  PageBridge(const PageBridge&) = delete;
  PageBridge& operator=(const PageBridge&) = delete;

  PageActions& actions() { return actions_; }

  struct DialogMessage {
    std::string text;
    // True if the message carried the token.
    bool fromTopFrame = false;
  };
  // Removes the token with which pageWorld.js marks the messages of the top frame's dialogs.
  // `message` may be null.
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
  // Secret from the page: proves that a dialog was raised through the top frame's wrapped
  // functions.
  std::string dialogToken_;
  PageActions actions_;
  SignalConnection bridgeMessages_;
  SignalConnection frameMessages_;
};

}  // namespace navora
