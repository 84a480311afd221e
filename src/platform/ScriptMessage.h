#pragma once

#include <string>

#include "platform/Navigation.h"

namespace navora {

// A message that the page posted to one of the registered handlers.
struct ScriptMessage {
  std::string name;
  // The body as unvalidated JSON text; "null" if JSON cannot represent it.
  std::string body;
  FrameInfo frame;
};

// Receives the page's messages. Called on the main thread.
class ScriptMessageHandler {
 public:
  virtual ~ScriptMessageHandler() = default;
  virtual void didReceiveScriptMessage(const ScriptMessage& message) = 0;
};

}  // namespace navora
