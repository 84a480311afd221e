#include "service/storage/SettingsRules.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <sstream>

#include "service/support/Text.h"

namespace navora::service {
namespace {

using Check = std::function<bool(const std::string&)>;

struct Rule {
  Check accepts;
  const char* message;
};

Check oneOf(std::vector<std::string> values) {
  return [values = std::move(values)](const std::string& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
  };
}

bool isLocaleChoice(const std::string& value) {
  return value == "system" || oneOf(SettingsRules::locales())(value);
}

bool isTimeZoneChoice(const std::string& value) {
  return value == "system" || SettingsRules::isTimeZone(value);
}

bool isQuietHours(const std::string& value) {
  static const std::regex range("([01][0-9]|2[0-3]):[0-5][0-9]-([01][0-9]|2[0-3]):[0-5][0-9]");
  return value == "off" || std::regex_match(value, range);
}

bool isNotificationPreferences(const std::string& text) {
  const Json preferences = Json::parse(text, nullptr, false);
  if (!preferences.is_object()) return false;
  const auto& kinds = SettingsRules::notificationKinds();
  for (const auto& [kind, channel] : preferences.items()) {
    const bool known = std::any_of(kinds.begin(), kinds.end(),
                                   [&kind = kind](const auto& each) { return kind == each.key; });
    if (!known || !channel.is_string() ||
        !oneOf({"phone", "inbox", "off"})(channel.get<std::string>())) {
      return false;
    }
  }
  return true;
}

bool isModel(const std::string& value) {
  return utf16Length(value) <= 100;
}

const std::map<std::string, Rule>& rules() {
  static const std::map<std::string, Rule> all{
      {"locale", {isLocaleChoice, "This language is not available."}},
      {"theme", {oneOf({"system", "light", "dark"}), "Choose system, light or dark."}},
      {"timeZone", {isTimeZoneChoice, "This time zone is not known."}},
      {"systemTimeZone", {SettingsRules::isTimeZone, "This time zone is not known."}},
      {"quietHours", {isQuietHours, "Write quiet hours as 22:00-07:00, or off."}},
      {"notifyPrefs", {isNotificationPreferences, "These notification channels are not valid."}},
      {"provider",
       {oneOf({"fallback", "openrouter", "openai", "gemini"}), "This provider is not known."}},
      {"model", {isModel, "This model name is too long."}},
  };
  return all;
}

}  // namespace

const std::vector<NotificationKind>& SettingsRules::notificationKinds() {
  static const std::vector<NotificationKind> kinds{
      {"capture_ready", "A note is ready", "phone"},
      {"message", "A message in a room", "phone"},
      {"invite", "An invitation", "phone"},
      {"event_added", "An event was added", "inbox"},
      {"event_changed", "An event was moved", "phone"},
      {"calendar_error", "A calendar has a problem", "inbox"},
      {"spend", "Spending reaches its limit", "off"},
  };
  return kinds;
}

const std::vector<std::string>& SettingsRules::locales() {
  static const std::vector<std::string> all{"ru", "en", "es", "pt-BR", "de", "fr", "ja"};
  return all;
}

Json SettingsRules::defaults() {
  return {{"locale", "system"},  {"theme", "system"},   {"timeZone", "system"},
          {"quietHours", "off"}, {"notifyPrefs", "{}"}, {"provider", "fallback"},
          {"model", ""}};
}

std::optional<SettingsProblem> SettingsRules::problem(const Json& changes) {
  if (!changes.is_object()) return SettingsProblem{"", "The settings must be an object."};
  for (const auto& [name, value] : changes.items()) {
    const auto rule = rules().find(name);
    if (rule == rules().end()) return SettingsProblem{name, "There is no such setting."};
    if (!value.is_string() || !rule->second.accepts(value.get<std::string>())) {
      return SettingsProblem{name, rule->second.message};
    }
  }
  return std::nullopt;
}

bool SettingsRules::isTimeZone(const std::string& name) {
  static const std::regex form("[A-Za-z][A-Za-z0-9_+-]*(/[A-Za-z0-9][A-Za-z0-9_+-]*)*");
  if (name.size() > 64 || !std::regex_match(name, form)) return false;
  const std::filesystem::path database("/usr/share/zoneinfo");
  std::error_code error;
  // Without the time zone database only the form can be checked.
  if (!std::filesystem::exists(database, error)) return true;
  return std::filesystem::is_regular_file(database / name, error);
}

std::string SettingsRules::effectiveTimeZone(const Json& settings) {
  const std::string chosen = settings.value("timeZone", "system");
  return chosen == "system" ? settings.value("systemTimeZone", "UTC") : chosen;
}

std::optional<std::string> SettingsRules::detectLocale(const std::string& acceptLanguage) {
  std::istringstream entries(acceptLanguage);
  for (std::string entry; std::getline(entries, entry, ',');) {
    std::string language = trimmed(entry.substr(0, entry.find_first_of(";-")));
    std::transform(language.begin(), language.end(), language.begin(), [](char letter) {
      return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    if (language == "pt") return "pt-BR";
    if (oneOf(locales())(language)) return language;
  }
  return std::nullopt;
}

}  // namespace navora::service
