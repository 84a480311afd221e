#include "app/PageMessages.h"

#include <algorithm>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

bool isSupported(const std::string& locale) {
  return std::ranges::find(DesktopLocale::supported(), locale) != DesktopLocale::supported().end();
}

}  // namespace

std::optional<LocaleMessage> LocaleMessage::read(const Json& body) {
  if (!body.is_object()) return std::nullopt;

  const auto requested = body.find("requestedLocale");
  if (requested == body.end() || !requested->is_string()) return std::nullopt;
  LocaleMessage message{requested->get<std::string>(), std::nullopt};
  if (message.requested != "system" && !isSupported(message.requested)) return std::nullopt;

  const auto detected = body.find("detectedLocale");
  if (detected == body.end() || detected->is_null()) return message;
  if (!detected->is_string() || !isSupported(detected->get<std::string>())) return std::nullopt;
  message.detected = detected->get<std::string>();
  return message;
}

}  // namespace navora
