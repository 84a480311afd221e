#pragma once

#include <optional>
#include <string>

#include "support/Date.h"

namespace navora {

// A cookie from the web view's store.
struct HttpCookie {
  std::string name;
  std::string value;
  // Has no port; may have a leading dot, as the store keeps it.
  std::string domain;
  std::string path;
  bool isSecure = false;
  // Nullopt for a session cookie.
  std::optional<Date> expires;

  bool operator==(const HttpCookie&) const = default;
};

}  // namespace navora
