#include "hosts/macos/system/MacUserDefaults.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/FoundationJson.h"

namespace navora {

std::optional<Json> MacUserDefaults::value(std::string_view key) const {
  id object = [[NSUserDefaults standardUserDefaults] objectForKey:toNSString(key)];
  return object == nil ? std::nullopt : toJson(object);
}

void MacUserDefaults::setValue(std::string_view key, Json value) {
  [[NSUserDefaults standardUserDefaults] setObject:toPropertyList(value) forKey:toNSString(key)];
}

void MacUserDefaults::removeValue(std::string_view key) {
  [[NSUserDefaults standardUserDefaults] removeObjectForKey:toNSString(key)];
}

}  // namespace navora
