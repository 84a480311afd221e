#include <regex>

#include "service/http/Routes.h"
#include "service/support/Text.h"

namespace navora::service {
namespace {

constexpr std::size_t titleLimit = 120;

bool isClockTime(const std::string& text) {
  static const std::regex form("([01][0-9]|2[0-3]):[0-5][0-9]");
  return text.empty() || std::regex_match(text, form);
}

}  // namespace

void addCalendarRoutes(Api& api, Storage& storage,
                       std::function<void(const User&, const Json& event)> eventAdded) {
  api.get("/api/events", [&storage](ApiCall& call) {
    const std::string month = call.request.get_param_value("month");
    if (!isIsoDate(month + "-01")) {
      call.fail(400, "invalid_month", "Name the month as 2026-03.");
      return;
    }
    call.reply({{"events", storage.calendar.list(call.user.id, month)}});
  });
  api.post("/api/events", [&storage, eventAdded](ApiCall& call) {
    const auto body = call.object();
    if (!body) return;
    const std::string date = textMember(*body, "date").value_or("");
    const std::string time = textMember(*body, "time").value_or("");
    const std::string title = trimmed(textMember(*body, "title").value_or(""));
    if (!isIsoDate(date) || !isClockTime(time) || title.empty() ||
        utf16Length(title) > titleLimit) {
      call.fail(422, "invalid_event", "An event needs a date and a short title.");
      return;
    }
    const Json event = storage.calendar.add(call.user.id, date, time, title);
    eventAdded(call.user, event);
    call.reply({{"event", event}}, 201);
  });
  api.remove("/api/events/([^/]+)", [&storage](ApiCall& call) {
    if (storage.calendar.remove(call.user.id, call.captured())) {
      call.response.status = 204;
    } else {
      call.fail(404, "not_found", "There is no such event.");
    }
  });
}

}  // namespace navora::service
