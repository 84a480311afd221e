#pragma once

#include <optional>
#include <string_view>

#include "support/Json.h"

namespace navora {

// The user's persistent settings. Reads see earlier writes immediately; if the store cannot be
// written, values are kept for the life of the process. Main thread only.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual std::optional<Json> value(std::string_view key) const = 0;
  virtual void setValue(std::string_view key, Json value) = 0;
  virtual void removeValue(std::string_view key) = 0;
};

}  // namespace navora
