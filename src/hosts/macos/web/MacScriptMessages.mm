#include "hosts/macos/web/MacScriptMessages.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/FoundationJson.h"
#include "hosts/macos/web/NavigationConversions.h"

@implementation NavoraScriptMessageForwarder

- (void)userContentController:(WKUserContentController*)userContentController
      didReceiveScriptMessage:(WKScriptMessage*)message {
  if (self.handler == nullptr) return;
  self.handler->didReceiveScriptMessage(navora::ScriptMessage{
      .name = navora::toString(message.name),
      .body = navora::toJsonText(message.body).value_or("null"),
      .frame = navora::toFrameInfo(message.frameInfo),
  });
}

@end
