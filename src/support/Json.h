#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace navora {

using Json = nlohmann::json;

// Parses a text that is exactly one JSON value. Returns nullopt if the text is not JSON or not
// valid UTF-8, or if its arrays and objects are nested more than 512 deep: such a value cannot be
// copied, compared or serialized without deep recursion. Never throws.
std::optional<Json> parseJson(std::string_view text);

// Returns the text as a string literal that is valid in JSON, in JavaScript and inside an HTML
// script element: U+2028, U+2029 and the slash of "</" are escaped. Invalid UTF-8 becomes U+FFFD.
std::string jsonStringLiteral(std::string_view text);

// Return the member's value, or nullopt if `json` is not an object, has no such member, or has one
// of another type. A boolean is not a number.
std::optional<std::string> stringMember(const Json& json, std::string_view key);
std::optional<bool> boolMember(const Json& json, std::string_view key);
std::optional<double> numberMember(const Json& json, std::string_view key);

// Return the member itself, owned by `json`, or null where the functions above return nullopt.
const Json* objectMember(const Json& json, std::string_view key);
const Json* arrayMember(const Json& json, std::string_view key);

}  // namespace navora
