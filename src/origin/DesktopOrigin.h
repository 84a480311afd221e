#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "support/Url.h"

namespace navora {

// Decides which web origin the application serves, which URLs belong to it and which links may be
// opened outside the application. Every rule is a pure function of its arguments.
class DesktopOrigin {
 public:
  // Returns the built-in origin of the service.
  static const Url& production();

  // Returns the origin to serve for a configured URL: its scheme, host and port with the path "/"
  // if it is an https URL, or an http URL of this machine; production() for any other value.
  static Url configured(std::optional<std::string_view> value);

  // Returns the same with a host that is not in ASCII as `toAscii` encodes it, which the engine and
  // HTTP need; production() if it returns nullopt. `toAscii` takes a host name in UTF-8.
  using HostNameEncoder = std::function<std::optional<std::string>(const std::string& host)>;
  static Url configured(std::optional<std::string_view> value, const HostNameEncoder& toAscii);

  // Returns whether `url` has the scheme, host and effective port of `origin`, and no credentials.
  static bool contains(const Url& url, const Url& origin);

  // Returns whether a link may be opened by the user's default application for it: http and https
  // URLs with a host, mailto and tel, without credentials.
  static bool canOpenExternally(const Url& url);

  // Prints one line if all checks pass. Otherwise names the first failing check on standard error
  // and exits with status 1.
  static void selfTest();
};

}  // namespace navora
