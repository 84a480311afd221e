#include "service/http/Routes.h"
#include "service/storage/SettingsRules.h"

namespace navora::service {
namespace {

Json kinds() {
  Json all = Json::array();
  for (const NotificationKind& kind : SettingsRules::notificationKinds()) {
    all.push_back({{"key", kind.key}, {"title", kind.title}, {"default", kind.defaultChannel}});
  }
  return all;
}

}  // namespace

void addNotificationRoutes(Api& api, Storage& storage) {
  api.get("/api/notifications", [&storage](ApiCall& call) {
    call.reply({{"notifications", storage.notifications.list(call.user.id)}, {"kinds", kinds()}});
  });
  api.post("/api/notifications/read", [&storage](ApiCall& call) {
    storage.notifications.markAllRead(call.user.id);
    call.reply(Json::object());
  });
  api.post("/api/notifications/([^/]+)/read", [&storage](ApiCall& call) {
    if (storage.notifications.markRead(call.user.id, call.captured())) {
      call.reply(Json::object());
    } else {
      call.fail(404, "not_found", "There is no such notification.");
    }
  });
}

}  // namespace navora::service
