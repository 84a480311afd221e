#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "capture/CaptureClient.h"

namespace navora {

// The state of the capture panel that a new process needs to continue where this one ended.
struct CaptureDraft {
  // The editor's text, valid UTF-8.
  std::string text;
  std::optional<CaptureAttempt> attempt;
  // Whether the service may have stored `attempt`. If so, there is an attempt, and its text is the
  // trimmed `text`.
  bool unconfirmed = false;

  bool isEmpty() const { return text.empty() && !attempt; }

  // Returns the draft as JSON text.
  std::string serialized() const;
  // Parses what serialized() returned. Returns nullopt for anything else.
  static std::optional<CaptureDraft> parse(std::string_view content);

  bool operator==(const CaptureDraft&) const = default;
};

}  // namespace navora
