#pragma once

#include <optional>
#include <string>

#include "support/Date.h"

namespace navora {

// A stored cookie, as the web view's store holds it.
struct HttpCookie {
  std::string name;
  std::string value;
  // Without a port; with a leading dot where the store keeps one.
  std::string domain;
  std::string path;
  bool isSecure = false;
  // None for a cookie of the session.
  std::optional<Date> expires;

  bool operator==(const HttpCookie&) const = default;
};

}  // namespace navora
