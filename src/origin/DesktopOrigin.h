#pragma once

#include <optional>
#include <string_view>

#include "support/Url.h"

namespace navora {

// Decides which web origin the application serves, which URLs belong to it and which links may be
// handed to the system. Every rule is a pure function of its arguments.
class DesktopOrigin {
 public:
  // The built-in origin of the service.
  static const Url& production();

  // The origin to serve for a configured text: scheme, host and port of an https URL, or of an
  // http URL on this machine, with the path "/". Whatever else is configured, production.
  static Url configured(std::optional<std::string_view> value);

  // Whether `url` has the scheme, host and effective port of `origin`, and no credentials.
  static bool contains(const Url& url, const Url& origin);

  // Whether a link may be opened by the user's browser, mail program or telephone.
  static bool canOpenExternally(const Url& url);

  // Prints one line and returns, or names the first failing check on standard error and exits with
  // status 1.
  static void selfTest();
};

}  // namespace navora
