#include "service/http/Routes.h"
#include "service/storage/SettingsRules.h"

namespace navora::service {
namespace {

Json settingsReply(const httplib::Request& request, Json settings) {
  const auto detected = SettingsRules::detectLocale(request.get_header_value("Accept-Language"));
  settings["detectedLocale"] = detected ? Json(*detected) : Json();
  const std::string timeZone = SettingsRules::effectiveTimeZone(settings);
  return {{"settings", std::move(settings)}, {"timeZone", timeZone}};
}

}  // namespace

void addSettingsRoutes(Api& api, Storage& storage) {
  api.get("/api/auth/me", [](ApiCall& call) {
    call.reply({{"user", {{"id", call.user.id}, {"name", call.user.name}}}});
  });
  api.get("/api/settings", [&storage](ApiCall& call) {
    call.reply(settingsReply(call.request, storage.settings.read(call.user.id)));
  });
  api.put("/api/settings", [&storage](ApiCall& call) {
    const auto changes = call.object();
    if (!changes) return;
    if (const auto problem = SettingsRules::problem(*changes)) {
      call.reply({{"error",
                   {{"code", "invalid_setting"},
                    {"field", problem->field},
                    {"message", problem->message}}}},
                 422);
      return;
    }
    call.reply(settingsReply(call.request, storage.settings.change(call.user.id, *changes)));
  });
}

}  // namespace navora::service
