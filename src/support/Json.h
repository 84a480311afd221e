#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace navora {

using Json = nlohmann::json;

// Reads one JSON value that takes up the whole text. Absent when the text is not JSON or not valid
// UTF-8, or when its arrays and objects lie more than 512 deep: such a value cannot be copied,
// compared or written without deep recursion. Never throws.
std::optional<Json> parseJson(std::string_view text);

// The text as a JSON string literal that is also a JavaScript one and may stand inside of a script
// element: U+2028, U+2029 and the slash of "</" are escaped. Bytes that are not UTF-8 become
// U+FFFD.
std::string jsonStringLiteral(std::string_view text);

// Lenient reading of one member: absent when `json` is not an object, has no such member, or has
// one of another type. A boolean is no number.
std::optional<std::string> stringMember(const Json& json, std::string_view key);
std::optional<bool> boolMember(const Json& json, std::string_view key);
std::optional<double> numberMember(const Json& json, std::string_view key);

// The member itself, owned by `json`; null where the getters above are absent.
const Json* objectMember(const Json& json, std::string_view key);
const Json* arrayMember(const Json& json, std::string_view key);

}  // namespace navora
