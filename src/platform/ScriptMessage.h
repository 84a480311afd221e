#pragma once

#include <string>

#include "platform/Navigation.h"

namespace navora {

// A message that the page posted to one of the named handlers.
struct ScriptMessage {
  std::string name;
  // The body as JSON text, not yet checked in any way; "null" for a body that JSON cannot express.
  std::string body;
  FrameInfo frame;
};

class ScriptMessageHandler {
 public:
  virtual ~ScriptMessageHandler() = default;
  virtual void didReceiveScriptMessage(const ScriptMessage& message) = 0;
};

}  // namespace navora
