#include "notifications/NotificationItems.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "locale/DesktopLocale.h"
#include "notifications/DesktopNotificationPolicy.h"
#include "support/PercentEncoding.h"

namespace navora {
namespace {

template <std::size_t count>
bool isOneOf(std::string_view kind, const std::array<std::string_view, count>& kinds) {
  return std::ranges::find(kinds, kind) != kinds.end();
}

std::string calendarPath(const Json& item, const Json& data) {
  std::string path = "/#calendar";
  const auto date = stringMember(data, "date");
  if (!date) return path;
  path += "?date=" + percentEncoded(*date);
  if (const auto event = stringMember(item, "eventUid")) path += "&event=" + percentEncoded(*event);
  return path;
}

std::string pathOfKind(const Json& item, const Json& data) {
  static constexpr std::array<std::string_view, 3> calendarKinds{"invite", "event_added",
                                                                 "event_changed"};
  static constexpr std::array<std::string_view, 2> settingsKinds{"spend", "calendar_error"};
  const std::string kind = stringMember(item, "kind").value_or("");
  if (isOneOf(kind, calendarKinds)) return calendarPath(item, data);
  if (kind == "signup") return "/#admin";
  if (isOneOf(kind, settingsKinds)) return "/#settings";
  return "/#today";
}

std::string destinationPath(const Json& item) {
  static const Json nothing = Json::object();
  const Json* member = objectMember(item, "data");
  const Json& data = member ? *member : nothing;
  if (auto url = stringMember(data, "url")) return *std::move(url);
  if (const auto capture = stringMember(item, "captureId"))
    return "/#today?open=" + percentEncoded(*capture);
  if (const auto room = stringMember(item, "roomId"))
    return "/#circles?room=" + percentEncoded(*room);
  if (stringMember(item, "circleId")) return "/#circles";
  return pathOfKind(item, data);
}

std::string body(const Json& item) {
  const auto lead = stringMember(item, "lead");
  const auto text = stringMember(item, "text");
  if (lead && text) return *lead + " " + *text;
  return lead.value_or(text.value_or(""));
}

std::optional<std::string> title(const Json& item) {
  const Json* data = objectMember(item, "data");
  return data ? stringMember(*data, "pushTitle") : std::nullopt;
}

}  // namespace

std::optional<Url> notificationDestination(const Json& item, const Url& origin) {
  auto url = origin.resolve(destinationPath(item));
  if (!url || !DesktopNotificationPolicy::sameOrigin(*url, origin)) return std::nullopt;
  return url;
}

NotificationContent notificationContent(const Json& item, const Url& destination) {
  return {title(item), body(item), destination.string()};
}

UserNotification userNotification(const std::string& id, NotificationContent content) {
  std::string title = content.title ? *std::move(content.title) : L("Навора");
  UserNotification notification{"navora-" + id, std::move(title), std::move(content.body), true,
                                std::move(content.url)};
  notification.once = true;
  return notification;
}

UserNotification testNotification(const Url& origin) {
  return {"navora-test", L("Навора"), L("Уведомления включены на этом устройстве"), true,
          origin.string() + "#today"};
}

}  // namespace navora
