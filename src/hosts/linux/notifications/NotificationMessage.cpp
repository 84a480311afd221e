#include "hosts/linux/notifications/NotificationMessage.h"

#include <string_view>

#include "hosts/linux/notifications/NotificationText.h"
#include "hosts/linux/system/ApplicationId.h"
#include "hosts/linux/system/GLibSupport.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

constexpr guint8 normalUrgency = 1;
constexpr gint32 defaultExpiration = -1;

GVariant* actionsFor(bool offered) {
  GVariantBuilder actions;
  g_variant_builder_init(&actions, G_VARIANT_TYPE_STRING_ARRAY);
  if (offered) {
    g_variant_builder_add(&actions, "s", defaultNotificationAction);
    g_variant_builder_add(&actions, "s", L("Показать Навору").c_str());
  }
  return g_variant_builder_end(&actions);
}

GVariant* hintsFor(bool sound) {
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(applicationId));
  g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(normalUrgency));
  if (sound) {
    g_variant_builder_add(&hints, "{sv}", "sound-name",
                          g_variant_new_string("message-new-instant"));
  } else {
    g_variant_builder_add(&hints, "{sv}", "suppress-sound", g_variant_new_boolean(TRUE));
  }
  return g_variant_builder_end(&hints);
}

}  // namespace

NotificationCapabilities notificationCapabilities(GVariant* reply) {
  NotificationCapabilities capabilities;
  const GVariantPtr list(g_variant_get_child_value(reply, 0));
  GVariantIter names;
  g_variant_iter_init(&names, list.get());
  const char* name = nullptr;
  while (g_variant_iter_loop(&names, "&s", &name) != FALSE) {
    if (std::string_view(name) == "actions") capabilities.actions = true;
    if (std::string_view(name) == "body-markup") capabilities.markup = true;
  }
  return capabilities;
}

GVariant* notificationMessage(const UserNotification& notification, std::uint32_t replacedNumber,
                              NotificationCapabilities capabilities, bool sound) {
  return g_variant_new("(susss@as@a{sv}i)", L("Навора").c_str(), replacedNumber, applicationId,
                       notificationSummary(notification.title).c_str(),
                       notificationBody(notification.body, capabilities.markup).c_str(),
                       actionsFor(capabilities.actions), hintsFor(sound), defaultExpiration);
}

}  // namespace navora
