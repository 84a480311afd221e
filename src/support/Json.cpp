#include "support/Json.h"

#include "support/Text.h"

namespace navora {
namespace {

constexpr int deepestNesting = 512;

// Counts brackets outside strings only; whether the text is valid JSON is left to the parser.
bool nestsTooDeep(std::string_view text) {
  int depth = 0;
  bool inString = false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char character = text[index];
    if (inString) {
      if (character == '\\') {
        ++index;
      } else if (character == '"') {
        inString = false;
      }
    } else if (character == '"') {
      inString = true;
    } else if (character == '[' || character == '{') {
      if (++depth > deepestNesting) return true;
    } else if (character == ']' || character == '}') {
      --depth;
    }
  }
  return false;
}

const Json* member(const Json& json, std::string_view key) {
  if (!json.is_object()) return nullptr;
  const auto found = json.find(key);
  return found == json.end() ? nullptr : &*found;
}

}  // namespace

std::optional<Json> parseJson(std::string_view text) {
  if (nestsTooDeep(text)) return std::nullopt;
  constexpr bool allowExceptions = false;
  Json json = Json::parse(text, nullptr, allowExceptions);
  if (json.is_discarded()) return std::nullopt;
  return json;
}

std::string jsonStringLiteral(std::string_view text) {
  constexpr int compact = -1;
  constexpr bool asciiOnly = false;
  std::string literal = Json(text).dump(compact, ' ', asciiOnly, Json::error_handler_t::replace);
  literal = replaceAll(literal, "\xE2\x80\xA8", "\\u2028");
  literal = replaceAll(literal, "\xE2\x80\xA9", "\\u2029");
  return replaceAll(literal, "</", "<\\/");
}

std::optional<std::string> stringMember(const Json& json, std::string_view key) {
  const Json* value = member(json, key);
  return value && value->is_string() ? std::optional(value->get<std::string>()) : std::nullopt;
}

std::optional<bool> boolMember(const Json& json, std::string_view key) {
  const Json* value = member(json, key);
  return value && value->is_boolean() ? std::optional(value->get<bool>()) : std::nullopt;
}

std::optional<double> numberMember(const Json& json, std::string_view key) {
  const Json* value = member(json, key);
  return value && value->is_number() ? std::optional(value->get<double>()) : std::nullopt;
}

const Json* objectMember(const Json& json, std::string_view key) {
  const Json* value = member(json, key);
  return value && value->is_object() ? value : nullptr;
}

const Json* arrayMember(const Json& json, std::string_view key) {
  const Json* value = member(json, key);
  return value && value->is_array() ? value : nullptr;
}

}  // namespace navora
