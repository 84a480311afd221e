#include "hosts/linux/LinuxNotificationCenter.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include <gtkmm/window.h>

#include "app/DesktopLocale.h"
#include "hosts/linux/BusCall.h"
#include "hosts/linux/NotificationText.h"

namespace navora {
namespace {

constexpr const char* serviceName = "org.freedesktop.Notifications";
constexpr const char* servicePath = "/org/freedesktop/Notifications";
constexpr const char* applicationId = "example.navora.Navora";
constexpr const char* defaultAction = "default";
constexpr std::chrono::seconds patience{5};
// More than any desktop keeps on the screen or in its list.
constexpr std::size_t mostRemembered = 200;

constexpr BusMethod serviceMethod(const char* name) {
  return {serviceName, servicePath, serviceName, name};
}

// The list's texts; none for a reply that is none.
bool contains(GVariant* reply, std::string_view text) {
  if (reply == nullptr) return false;
  const GVariantPtr list(g_variant_get_child_value(reply, 0));
  GVariantIter texts;
  g_variant_iter_init(&texts, list.get());
  const char* each = nullptr;
  while (g_variant_iter_loop(&texts, "&s", &each) != FALSE) {
    if (text == each) return true;
  }
  return false;
}

bool isInFront() {
  const auto windows = Gtk::Window::list_toplevels();
  return std::ranges::any_of(windows,
                             [](const Gtk::Window* window) { return window->is_active(); });
}

PlatformError unavailable(const GError* error) {
  if (error == nullptr) return {"org.freedesktop.Notifications", 0, "No session bus"};
  return {g_quark_to_string(error->domain), error->code, stringFrom(error->message)};
}

GVariant* actionsFor(bool offered) {
  GVariantBuilder actions;
  g_variant_builder_init(&actions, G_VARIANT_TYPE_STRING_ARRAY);
  if (offered) {
    g_variant_builder_add(&actions, "s", defaultAction);
    g_variant_builder_add(&actions, "s", L("Показать Навору").c_str());
  }
  return g_variant_builder_end(&actions);
}

GVariant* hintsFor(bool sound) {
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(applicationId));
  g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(1));
  if (sound) {
    g_variant_builder_add(&hints, "{sv}", "sound-name",
                          g_variant_new_string("message-new-instant"));
  } else {
    g_variant_builder_add(&hints, "{sv}", "suppress-sound", g_variant_new_boolean(TRUE));
  }
  return g_variant_builder_end(&hints);
}

using UseBus = std::function<void(GDBusConnection*)>;

void onBus(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<UseBus> use(static_cast<UseBus*>(data));
  const auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
  (*use)(bus.get());
}

}  // namespace

LinuxNotificationCenter::~LinuxNotificationCenter() {
  if (nameWatch_ != 0) g_bus_unwatch_name(nameWatch_);
  for (const guint subscription : {actionSubscription_, closedSubscription_}) {
    if (subscription != 0) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
  }
}

void LinuxNotificationCenter::withBus(UseBus use) {
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, onBus,
            new UseBus(lifetime_.guard([this, use = std::move(use)](GDBusConnection* bus) {
              if (bus != nullptr) listen(bus);
              use(bus);
            })));
}

void LinuxNotificationCenter::listen(GDBusConnection* bus) {
  if (bus_) return;
  bus_ = GObjectPtr<GDBusConnection>::retain(bus);
  const auto subscribe = [&](const char* signal, GDBusSignalCallback callback) {
    return g_dbus_connection_signal_subscribe(bus, serviceName, serviceName, signal, servicePath,
                                              nullptr, G_DBUS_SIGNAL_FLAGS_NONE, callback, this,
                                              nullptr);
  };
  actionSubscription_ = subscribe("ActionInvoked", onActionInvoked);
  closedSubscription_ = subscribe("NotificationClosed", onClosed);
  nameWatch_ = g_bus_watch_name_on_connection(bus, serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                              nullptr, onVanished, this, nullptr);
}

void LinuxNotificationCenter::findService(GDBusConnection* bus, std::function<void(bool)> found) {
  const auto startable = [found](GVariant* reply, const GError*) {
    found(contains(reply, serviceName));
  };
  const auto running = [found, startable, connection = GObjectPtr<GDBusConnection>::retain(bus)](
                           GVariant* reply, const GError*) {
    gboolean hasOwner = FALSE;
    if (reply != nullptr) g_variant_get(reply, "(b)", &hasOwner);
    if (hasOwner != FALSE) return found(true);
    callBus(connection.get(), busDaemonMethod("ListActivatableNames"), nullptr, "(as)", patience,
            startable);
  };
  callBus(bus, busDaemonMethod("NameHasOwner"), g_variant_new("(s)", serviceName), "(b)", patience,
          running);
}

void LinuxNotificationCenter::authorizationStatus(
    std::function<void(AuthorizationStatus)> completion) {
  withBus([this, completion = std::move(completion)](GDBusConnection* bus) {
    if (bus == nullptr) return completion(AuthorizationStatus::denied);
    findService(bus, lifetime_.guard([completion](bool found) {
      completion(found ? AuthorizationStatus::authorized : AuthorizationStatus::denied);
    }));
  });
}

void LinuxNotificationCenter::requestAuthorization(
    Options, std::function<void(AuthorizationResult)> completion) {
  authorizationStatus([completion = std::move(completion)](AuthorizationStatus status) {
    completion(status == AuthorizationStatus::authorized);
  });
}

PresentationOptions LinuxNotificationCenter::presentation() const {
  if (delegate_ == nullptr || !isInFront()) return {.banner = true, .sound = true};
  return delegate_->willPresentNotification();
}

void LinuxNotificationCenter::add(const UserNotification& notification, AddCompletion completion) {
  withBus([this, notification, completion = std::move(completion)](GDBusConnection* bus) {
    if (bus == nullptr) return completion(unavailable(nullptr));
    const PresentationOptions options = presentation();
    if (!options.banner) return completion(std::nullopt);
    const bool sound = options.sound && notification.defaultSound;
    callBus(bus, serviceMethod("GetCapabilities"), nullptr, "(as)", noTimeout,
            lifetime_.guard(
                [this, notification, sound, completion](GVariant* reply, const GError* error) {
                  if (error != nullptr) return completion(unavailable(error));
                  const Capabilities capabilities{contains(reply, "actions"),
                                                  contains(reply, "body-markup")};
                  notify(bus_.get(), notification, capabilities, sound, completion);
                }));
  });
}

void LinuxNotificationCenter::notify(GDBusConnection* bus, const UserNotification& notification,
                                     Capabilities capabilities, bool sound,
                                     AddCompletion completion) {
  constexpr gint32 serviceDecides = -1;
  GVariant* parameters =
      g_variant_new("(susss@as@a{sv}i)", L("Навора").c_str(), replacedId(notification.identifier),
                    applicationId, notificationSummary(notification.title).c_str(),
                    notificationBody(notification.body, capabilities.markup).c_str(),
                    actionsFor(capabilities.actions), hintsFor(sound), serviceDecides);
  callBus(bus, serviceMethod("Notify"), parameters, "(u)", noTimeout,
          lifetime_.guard([this, notification, completion](GVariant* reply, const GError* error) {
            if (error != nullptr) return completion(unavailable(error));
            std::uint32_t id = 0;
            g_variant_get(reply, "(u)", &id);
            remember(id, notification);
            completion(std::nullopt);
          }));
}

std::uint32_t LinuxNotificationCenter::replacedId(const std::string& identifier) const {
  const auto earlier = std::ranges::find_if(
      shown_, [&](const auto& entry) { return entry.second.identifier == identifier; });
  return earlier == shown_.end() ? 0 : earlier->first;
}

void LinuxNotificationCenter::remember(std::uint32_t id, const UserNotification& notification) {
  std::erase_if(shown_, [&](const auto& entry) {
    return entry.second.identifier == notification.identifier;
  });
  // Services count upwards: the smallest number is the oldest.
  if (shown_.size() >= mostRemembered) shown_.erase(shown_.begin());
  shown_[id] = {notification.identifier, notification.url};
}

void LinuxNotificationCenter::actionInvoked(std::uint32_t id, const std::string& action) {
  const auto found = shown_.find(id);
  if (found == shown_.end() || action != defaultAction || delegate_ == nullptr) return;
  delegate_->didReceiveNotification(std::string(found->second.url));
}

void LinuxNotificationCenter::onActionInvoked(GDBusConnection*, const char*, const char*,
                                              const char*, const char*, GVariant* parameters,
                                              gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(us)")) == FALSE) return;
  std::uint32_t id = 0;
  const char* action = nullptr;
  g_variant_get(parameters, "(u&s)", &id, &action);
  static_cast<LinuxNotificationCenter*>(self)->actionInvoked(id, action);
}

void LinuxNotificationCenter::onClosed(GDBusConnection*, const char*, const char*, const char*,
                                       const char*, GVariant* parameters, gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(uu)")) == FALSE) return;
  std::uint32_t id = 0;
  g_variant_get(parameters, "(uu)", &id, nullptr);
  static_cast<LinuxNotificationCenter*>(self)->shown_.erase(id);
}

void LinuxNotificationCenter::onVanished(GDBusConnection*, const char*, gpointer self) {
  // Another service counts anew.
  static_cast<LinuxNotificationCenter*>(self)->shown_.clear();
}

}  // namespace navora
