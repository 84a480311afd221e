#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace navora::service {

using Json = nlohmann::json;

// Returns compact JSON text. Bytes that are not UTF-8 become replacement characters.
inline std::string jsonText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Returns the string member `name` of an object, or nullopt if it is missing or not a string.
inline std::optional<std::string> textMember(const Json& object, const char* name) {
  const auto member = object.find(name);
  if (member == object.end() || !member->is_string()) return std::nullopt;
  return member->get<std::string>();
}

}  // namespace navora::service
