#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/UserDefaults.h"

namespace navora {

// User defaults kept in memory for the life of the object, for tests and tools.
class MemoryUserDefaults final : public UserDefaults {
 public:
  std::optional<Json> value(std::string_view key) const override;
  void setValue(std::string_view key, Json value) override;
  void removeValue(std::string_view key) override;

 private:
  std::map<std::string, Json, std::less<>> values_;
};

}  // namespace navora
