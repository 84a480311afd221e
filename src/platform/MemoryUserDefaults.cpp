#include "platform/MemoryUserDefaults.h"

#include <utility>

namespace navora {

std::optional<Json> MemoryUserDefaults::value(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void MemoryUserDefaults::setValue(std::string_view key, Json value) {
  values_.insert_or_assign(std::string(key), std::move(value));
}

void MemoryUserDefaults::removeValue(std::string_view key) {
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

}  // namespace navora
