#pragma once

#include <optional>
#include <string_view>

#include "support/Json.h"

namespace navora {

// The user's small persistent values. Reads see earlier writes at once; a store that cannot be
// written keeps the values for the life of the process.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual std::optional<Json> value(std::string_view key) const = 0;
  virtual void setValue(std::string_view key, Json value) = 0;
  virtual void removeValue(std::string_view key) = 0;
};

}  // namespace navora
