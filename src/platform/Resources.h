#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// The files that are installed with the application.
class Resources {
 public:
  virtual ~Resources() = default;

  // The resource as UTF-8 text; none if it is missing, unreadable or not UTF-8.
  virtual std::optional<std::string> read(std::string_view name,
                                          std::string_view extension) const = 0;
};

}  // namespace navora
