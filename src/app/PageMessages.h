#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "support/Json.h"

namespace navora {

// The names of the handlers that pages post messages to. NavoraAppDelegateMessages.cpp maps each of
// them to the function that handles it.
struct PageMessages {
  static constexpr std::string_view locale = "navoraLocale";
  static constexpr std::string_view captureAppearance = "navoraCaptureAppearance";
  static constexpr std::string_view timeZoneDetection = "navoraTimeZoneDetection";
  static constexpr std::string_view notifications = "navoraNotifications";
};

// The body of a `locale` message: the user's language setting.
struct LocaleMessage {
  // "system" or a supported language code.
  std::string requested;
  std::optional<std::string> detected;

  // Returns nullopt unless the whole body is valid. Only exact codes are accepted, because the
  // service sends one of its supported languages rather than an arbitrary language tag.
  static std::optional<LocaleMessage> read(const Json& body);

  bool operator==(const LocaleMessage&) const = default;
};

}  // namespace navora
