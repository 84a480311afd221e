#include "hosts/linux/notifications/LinuxNotificationCenter.h"

#include <string_view>
#include <utility>

#include "hosts/linux/bus/BusCall.h"
#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/workspace/ActiveWindow.h"

namespace navora {
namespace {

constexpr const char* serviceName = "org.freedesktop.Notifications";
constexpr const char* servicePath = "/org/freedesktop/Notifications";

constexpr BusMethod serviceMethod(const char* name) {
  return {serviceName, servicePath, serviceName, name};
}

// Returns whether the array of strings in a reply of type (as) contains the text.
bool contains(GVariant* reply, std::string_view text) {
  const GVariantPtr list(g_variant_get_child_value(reply, 0));
  GVariantIter texts;
  g_variant_iter_init(&texts, list.get());
  const char* each = nullptr;
  while (g_variant_iter_loop(&texts, "&s", &each) != FALSE) {
    if (text == each) return true;
  }
  return false;
}

// Reports whether the service runs or can be activated by the bus.
void findService(GDBusConnection* bus, const std::function<void(bool)>& found) {
  const auto startable = [found](GVariant* reply, const GError*) {
    found(reply != nullptr && contains(reply, serviceName));
  };
  const auto running = [found, startable, connection = GObjectPtr<GDBusConnection>::retain(bus)](
                           GVariant* reply, const GError*) {
    gboolean hasOwner = FALSE;
    if (reply != nullptr) g_variant_get(reply, "(b)", &hasOwner);
    if (hasOwner != FALSE) return found(true);
    callBus(connection.get(), busDaemonMethod("ListActivatableNames"), nullptr, "(as)", noTimeout,
            startable);
  };
  callBus(bus, busDaemonMethod("NameHasOwner"), g_variant_new("(s)", serviceName), "(b)", noTimeout,
          running);
}

// Strips the "GDBus.Error:" prefix, which is meant for programs.
PlatformError readableError(const GError* error) {
  const GErrorPtr copy(g_error_copy(error));
  g_dbus_error_strip_remote_error(copy.get());
  return platformErrorFrom(*copy);
}

PlatformError timeoutError() {
  // GLib's own message, in the user's language.
  const GErrorPtr error(g_error_new_literal(G_IO_ERROR, G_IO_ERROR_TIMED_OUT,
                                            g_dgettext("glib20", "Timeout was reached")));
  return platformErrorFrom(*error);
}

}  // namespace

LinuxNotificationCenter::~LinuxNotificationCenter() {
  closeShown();
  if (nameWatch_ != 0) g_bus_unwatch_name(nameWatch_);
  if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

void LinuxNotificationCenter::closeShown() {
  const auto numbers = shown_.numbers();
  if (numbers.empty()) return;
  for (const std::uint32_t number : numbers) {
    g_dbus_connection_call(bus_.get(), serviceName, servicePath, serviceName, "CloseNotification",
                           g_variant_new("(u)", number), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           -1, nullptr, nullptr, nullptr);
  }
  // The process may be about to exit. Fails if the bus is gone, and the service with it.
  g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
}

void LinuxNotificationCenter::setDelegate(NotificationCenterDelegate* delegate) {
  delegate_ = delegate;
  if (delegate != nullptr) withBus([](GDBusConnection*, const GError*) {});
}

// Does not use joinSharedBus(), which passes no error on and keeps no order.
void LinuxNotificationCenter::withBus(UseBus use) {
  if (bus_) return use(bus_.get(), nullptr);
  waitingForBus_.push_back(lifetime_.guard(std::move(use)));
  if (waitingForBus_.size() > 1) return;
  const auto useInOrder = [this](GDBusConnection* bus, const GError* error) {
    if (bus != nullptr) subscribe(bus);
    for (const UseBus& each : std::exchange(waitingForBus_, {}))
      each(bus, error);
  };
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, onBus, new UseBus(lifetime_.guard(useInOrder)));
}

void LinuxNotificationCenter::onBus(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<UseBus> use(static_cast<UseBus*>(data));
  GErrorPtr error;
  const auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_finish(result, error.out()));
  (*use)(bus.get(), error.get());
}

void LinuxNotificationCenter::subscribe(GDBusConnection* bus) {
  bus_ = GObjectPtr<GDBusConnection>::retain(bus);
  subscription_ = g_dbus_connection_signal_subscribe(bus, serviceName, serviceName, nullptr,
                                                     servicePath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                     onSignal, this, nullptr);
  nameWatch_ = g_bus_watch_name_on_connection(bus, serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                              onAppeared, onVanished, this, nullptr);
}

void LinuxNotificationCenter::authorizationStatus(
    std::function<void(AuthorizationStatus)> completion) {
  const auto result = CallbackWithTimeout<AuthorizationStatus>::start(
      timeout_, lifetime_.guard(std::move(completion)), AuthorizationStatus::denied);
  withBus([result](GDBusConnection* bus, const GError*) {
    if (bus == nullptr) return result->call(AuthorizationStatus::denied);
    findService(bus, [result](bool found) {
      result->call(found ? AuthorizationStatus::authorized : AuthorizationStatus::denied);
    });
  });
}

void LinuxNotificationCenter::requestAuthorization(
    Options, std::function<void(AuthorizationResult)> completion) {
  authorizationStatus([completion = std::move(completion)](AuthorizationStatus status) {
    completion(status == AuthorizationStatus::authorized);
  });
}

PresentationOptions LinuxNotificationCenter::presentation() const {
  if (delegate_ == nullptr || !isApplicationActive()) return {.banner = true, .sound = true};
  return delegate_->willPresentNotification();
}

void LinuxNotificationCenter::add(const UserNotification& notification,
                                  std::function<void(std::optional<PlatformError>)> completion) {
  const Delivery delivery{.notification = notification,
                          .capabilities = {},
                          .sound = false,
                          .completion = AddCompletion::start(
                              timeout_, lifetime_.guard(std::move(completion)), timeoutError())};
  const auto prepared = [this, delivery](GVariant* reply, const GError* error) {
    if (error != nullptr) return delivery.completion->call(readableError(error));
    const PresentationOptions options = presentation();
    if (!options.banner) return delivery.completion->call(std::nullopt);
    Delivery complete = delivery;
    complete.capabilities = notificationCapabilities(reply);
    complete.sound = options.sound && delivery.notification.defaultSound;
    deliver(std::move(complete));
  };
  withBus([this, completion = delivery.completion, prepared](GDBusConnection* bus,
                                                             const GError* error) {
    if (bus == nullptr) return completion->call(readableError(error));
    callBus(bus, serviceMethod("GetCapabilities"), nullptr, "(as)", timeout_,
            lifetime_.guard(prepared));
  });
}

void LinuxNotificationCenter::deliver(Delivery delivery) {
  // A delivery that timed out was reported as failed and may be retried: showing it would duplicate
  // it.
  if (delivery.completion->wasCalled()) return;
  const std::string& identifier = delivery.notification.identifier;
  const auto [earlier, isFirst] = pending_.try_emplace(identifier);
  if (!isFirst) {
    // Wait for the number of the earlier notification, which this one replaces.
    std::erase_if(earlier->second,
                  [](const Delivery& waiting) { return waiting.completion->wasCalled(); });
    earlier->second.push_back(std::move(delivery));
    return;
  }
  if (wasShownLate(delivery.notification)) {
    pending_.erase(earlier);
    delivery.completion->call(std::nullopt);
    return;
  }
  GVariant* message =
      notificationMessage(delivery.notification, shown_.numberOf(identifier).value_or(0),
                          delivery.capabilities, delivery.sound);
  callBus(bus_.get(), serviceMethod("Notify"), message, "(u)", noTimeout,
          lifetime_.guard([this, delivery = std::move(delivery), run = run_](GVariant* reply,
                                                                             const GError* error) {
            delivered(delivery, run, reply, error);
          }));
}

bool LinuxNotificationCenter::wasShownLate(const UserNotification& notification) {
  const auto late = shownLate_.extract(notification.identifier);
  return !late.empty() && notification.once && late.mapped() == notification;
}

void LinuxNotificationCenter::delivered(const Delivery& delivery, std::uint64_t run,
                                        GVariant* reply, const GError* error) {
  auto waiting = std::move(pending_.extract(delivery.notification.identifier).mapped());
  if (reply != nullptr && run == run_) {
    std::uint32_t number = 0;
    g_variant_get(reply, "(u)", &number);
    shown_.add(number, delivery.notification.identifier, delivery.notification.url);
    if (delivery.completion->wasCalled())
      shownLate_.insert_or_assign(delivery.notification.identifier, delivery.notification);
  }
  for (Delivery& next : waiting)
    deliver(std::move(next));
  // Last, because the completion may destroy this object.
  delivery.completion->call(error == nullptr ? std::nullopt : std::optional(readableError(error)));
}

// Receives only the service's own signals: the subscription filters by its name.
void LinuxNotificationCenter::onSignal(GDBusConnection*, const char*, const char*, const char*,
                                       const char* name, GVariant* parameters, gpointer pointer) {
  auto& self = *static_cast<LinuxNotificationCenter*>(pointer);
  const std::string_view signal = name;
  const bool isClosed = signal == "NotificationClosed";
  if (!isClosed && signal != "ActionInvoked" && signal != "ActivationToken") return;
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE(isClosed ? "(uu)" : "(us)")) == FALSE) return;
  std::uint32_t number = 0;
  g_variant_get_child(parameters, 0, "u", &number);
  if (isClosed) return self.shown_.remove(number);

  const std::optional<std::string> url = self.shown_.urlOf(number);
  if (!url) return;
  const char* text = nullptr;
  g_variant_get_child(parameters, 1, "&s", &text);
  // The service emits ActivationToken just before the ActionInvoked that it belongs to.
  if (signal == "ActivationToken") return useActivationToken(text);
  if (std::string_view(text) != defaultNotificationAction || self.delegate_ == nullptr) return;
  self.delegate_->didReceiveNotification(url);
}

void LinuxNotificationCenter::onAppeared(GDBusConnection*, const char*, const char*,
                                         gpointer self) {
  static_cast<LinuxNotificationCenter*>(self)->serviceChanged();
}

void LinuxNotificationCenter::onVanished(GDBusConnection*, const char*, gpointer pointer) {
  auto& self = *static_cast<LinuxNotificationCenter*>(pointer);
  ++self.run_;
  self.shown_.clear();
  self.shownLate_.clear();
  self.serviceChanged();
}

void LinuxNotificationCenter::serviceChanged() {
  if (delegate_ != nullptr) delegate_->authorizationMayHaveChanged();
}

}  // namespace navora
