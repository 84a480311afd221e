#include "hosts/linux/installation/UpdateAddress.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace navora {

bool isLoopbackAddress(const Url& url) {
  constexpr std::array<std::string_view, 3> names{"localhost", "127.0.0.1", "::1"};
  const auto host = url.host();
  return url.scheme() == "http" && !url.user() && host &&
         std::ranges::find(names, *host) != names.end();
}

bool isUpdateAddress(const Url& url) {
  const auto host = url.host();
  const bool isSecure = url.scheme() == "https" && !url.user() && host && !host->empty();
  return isSecure || isLoopbackAddress(url);
}

}  // namespace navora
