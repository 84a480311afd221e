#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "capture/CaptureClient.h"

namespace navora {

// What the capture panel holds that a new process needs to continue where this one ends.
struct CaptureDraft {
  // The editor's text, valid UTF-8.
  std::string text;
  std::optional<CaptureAttempt> attempt;
  // Whether the service may have stored the attempt. Then there is one, of the trimmed text.
  bool unconfirmed = false;

  bool isEmpty() const { return text.empty() && !attempt; }

  // Returns the draft as a text for a file.
  std::string serialized() const;
  // Reads what serialized() returned; nullopt for anything else.
  static std::optional<CaptureDraft> parse(std::string_view content);

  bool operator==(const CaptureDraft&) const = default;
};

}  // namespace navora
