#include "hosts/macos/system/MacUserDefaults.h"

#include <algorithm>

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/FoundationJson.h"

namespace navora {

namespace {

// The one key of the dictionary that stands for a value with nulls and holds its JSON text.
NSString* const jsonTextKey = @"NavoraJSONText";

bool containsNull(const Json& value) {
  return value.is_null() ||
         (value.is_structured() && std::any_of(value.begin(), value.end(), containsNull));
}

id toStoredObject(const Json& value) {
  if (!containsNull(value)) return toPropertyList(value);
  return @{
    jsonTextKey : toNSString(value.dump(-1, ' ', false, Json::error_handler_t::replace)),
  };
}

std::optional<Json> fromStoredObject(id object) {
  if ([object isKindOfClass:[NSDictionary class]] && [object count] == 1) {
    id text = ((NSDictionary*)object)[jsonTextKey];
    if ([text isKindOfClass:[NSString class]]) return parseJson(toString(text));
  }
  return toJson(object);
}

}  // namespace

std::optional<Json> MacUserDefaults::value(std::string_view key) const {
  id object = [[NSUserDefaults standardUserDefaults] objectForKey:toNSString(key)];
  return object == nil ? std::nullopt : fromStoredObject(object);
}

void MacUserDefaults::setValue(std::string_view key, Json value) {
  [[NSUserDefaults standardUserDefaults] setObject:toStoredObject(value) forKey:toNSString(key)];
}

void MacUserDefaults::removeValue(std::string_view key) {
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:toNSString(key)];
}

}  // namespace navora
