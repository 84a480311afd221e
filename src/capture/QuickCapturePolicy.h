#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Decides which key press sends the note, which text may be sent and which reply proves that it was
// stored. Every rule is a pure function of its arguments.
class QuickCapturePolicy {
 public:
  // In UTF-16 code units.
  static constexpr std::size_t maximumTextLength = 10'000;

  // The ids under which the service has stored a note and processes it.
  struct Receipt {
    std::string captureId;
    std::string jobId;
    bool operator==(const Receipt&) const = default;
  };

  // Returns whether a key press, given as in KeyEvent, sends the note. Always false while an input
  // method is composing: the key is the input method's.
  static bool shouldSubmit(std::uint16_t keyCode, std::uint32_t modifiers, bool composing);

  // Returns whether a text, already trimmed, may be sent.
  static bool validText(std::string_view text);

  // Returns whether the service's reply proves that the note was stored and that its job is on the
  // same service.
  static bool confirmed(const Json& reply, const Url& origin);
  // Returns the ids in a reply that is `confirmed`, nullopt for any other.
  static std::optional<Receipt> readReceipt(const Json& reply, const Url& origin);

  // Prints one line if all checks pass. Otherwise writes one line to standard error and exits with
  // status 1.
  static void selfTest();
};

// Returns the length that telemetry reports for a text: its UTF-16 code units, capped at
// `QuickCapturePolicy::maximumTextLength`.
std::size_t reportedLength(std::string_view text);

}  // namespace navora
