#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navora {

// Reads the files installed with the application.
class Resources {
 public:
  virtual ~Resources() = default;

  // Returns the file as UTF-8 text, or nullopt if it is missing, unreadable or not UTF-8.
  virtual std::optional<std::string> read(std::string_view name,
                                          std::string_view extension) const = 0;
};

}  // namespace navora
