#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Which key press sends the note, which text may be sent and which answer proves that it is stored.
// Every rule is a pure function of its arguments.
class QuickCapturePolicy {
 public:
  // UTF-16 code units.
  static constexpr std::size_t maximumTextLength = 10'000;

  // Whether a key press, given as in KeyEvent, is the gesture that sends. While an input method
  // composes, the key belongs to it.
  static bool shouldSubmit(std::uint16_t keyCode, std::uint32_t modifiers, bool composing);

  // Whether a text, trimmed by the caller, may be sent.
  static bool validText(std::string_view text);

  // Whether the service's answer proves that the note is stored and that its job exists on the same
  // service. Everything malformed proves nothing.
  static bool confirmed(const Json& reply, const Url& origin);

  // Prints one line and returns, or writes one line to standard error and exits with status 1.
  static void selfTest();
};

// What is reported of a text's length: UTF-16 code units, at most the longest that may be sent.
std::size_t reportedLength(std::string_view text);

}  // namespace navora
