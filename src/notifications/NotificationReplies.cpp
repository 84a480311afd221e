#include "notifications/NotificationReplies.h"

#include <algorithm>
#include <utility>

namespace navora {
namespace {

// Parses a JSON object whose members are all texts.
std::optional<std::map<std::string, std::string>> readTexts(const std::string& text) {
  const auto object = parseJson(text);
  if (!object || !object->is_object()) return std::nullopt;
  std::map<std::string, std::string> texts;
  for (const auto& [key, value] : object->items()) {
    if (!value.is_string()) return std::nullopt;
    texts[key] = value.get<std::string>();
  }
  return texts;
}

bool isArrayOfObjects(const Json* array) {
  return array && std::ranges::all_of(*array, [](const Json& each) { return each.is_object(); });
}

std::map<std::string, std::string> readDefaults(const Json& kinds) {
  std::map<std::string, std::string> defaults;
  for (const Json& kind : kinds) {
    const auto key = stringMember(kind, "key");
    const auto channel = stringMember(kind, "default");
    if (key && channel) defaults[*key] = *channel;
  }
  return defaults;
}

}  // namespace

std::optional<std::string> readUserId(const Json& reply) {
  const Json* user = objectMember(reply, "user");
  return user ? stringMember(*user, "id") : std::nullopt;
}

std::optional<NotificationSettings> NotificationSettings::read(const Json& reply) {
  const Json* settings = objectMember(reply, "settings");
  if (!settings) return std::nullopt;
  const auto preferencesText = stringMember(*settings, "notifyPrefs");
  const auto quietHours = stringMember(*settings, "quietHours");
  const auto timeZone = stringMember(reply, "timeZone");
  if (!preferencesText || !quietHours || !timeZone) return std::nullopt;
  auto preferences = readTexts(*preferencesText);
  if (!preferences) return std::nullopt;
  return NotificationSettings{*std::move(preferences), *quietHours, *timeZone};
}

std::optional<NotificationList> NotificationList::read(Json reply) {
  if (!isArrayOfObjects(arrayMember(reply, "notifications"))) return std::nullopt;
  const Json* kinds = arrayMember(reply, "kinds");
  if (!isArrayOfObjects(kinds)) return std::nullopt;
  NotificationList list{{}, readDefaults(*kinds)};
  list.items = std::move(reply["notifications"].get_ref<std::vector<Json>&>());
  return list;
}

}  // namespace navora
