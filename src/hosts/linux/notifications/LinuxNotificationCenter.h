#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "hosts/linux/notifications/CallbackWithTimeout.h"
#include "hosts/linux/notifications/NotificationMessage.h"
#include "hosts/linux/notifications/ShownNotifications.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/NotificationCenter.h"
#include "support/Lifetime.h"

namespace navora {

// Shows notifications through the desktop's notification service (org.freedesktop.Notifications).
// Linux desktops have no permission to ask for: the status is authorized where the service runs or
// can be activated by the bus, and denied otherwise.
class LinuxNotificationCenter final : public NotificationCenter {
 public:
  LinuxNotificationCenter() = default;
  // Closes the notifications that are still shown: a click is reported to a running program only,
  // and starts none.
  ~LinuxNotificationCenter() override;

  LinuxNotificationCenter(const LinuxNotificationCenter&) = delete;
  LinuxNotificationCenter& operator=(const LinuxNotificationCenter&) = delete;

  // Sets the time within which the service must reply to later calls; 5 seconds by default.
  void setTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

  // From the first delegate on, watches the service: it reports its start and its exit.
  void setDelegate(NotificationCenterDelegate* delegate) override;
  void requestAuthorization(Options options,
                            std::function<void(AuthorizationResult)> completion) override;
  void authorizationStatus(std::function<void(AuthorizationStatus)> completion) override;
  // Fails if the service does not reply in time. It may show the notification nevertheless, so its
  // late reply is still recorded: a later add() of the same notification succeeds without showing
  // it again if it is to be shown `once`, and any other with the same identifier replaces it.
  void add(const UserNotification& notification,
           std::function<void(std::optional<PlatformError>)> completion) override;

 private:
  using AddCompletion = CallbackWithTimeout<std::optional<PlatformError>>;
  // `bus` is null, and `error` set, if there is no session bus.
  using UseBus = std::function<void(GDBusConnection* bus, const GError* error)>;

  // A notification that has not been delivered to the service yet.
  struct Delivery {
    UserNotification notification;
    NotificationCapabilities capabilities;
    bool sound = false;
    AddCompletion::Pointer completion;
  };

  void withBus(UseBus use);
  static void onBus(GObject* source, GAsyncResult* result, gpointer data);
  void subscribe(GDBusConnection* bus);
  PresentationOptions presentation() const;
  void deliver(Delivery delivery);
  bool wasShownLate(const UserNotification& notification);
  void delivered(const Delivery& delivery, std::uint64_t run, GVariant* reply, const GError* error);

  static void onSignal(GDBusConnection* bus, const char* sender, const char* path,
                       const char* interface, const char* signal, GVariant* parameters,
                       gpointer self);
  static void onAppeared(GDBusConnection* bus, const char* name, const char* owner, gpointer self);
  static void onVanished(GDBusConnection* bus, const char* name, gpointer self);
  void serviceChanged();
  void closeShown();

  std::chrono::milliseconds timeout_ = std::chrono::seconds(5);
  NotificationCenterDelegate* delegate_ = nullptr;
  // The notifications of the running service; it keeps fewer itself.
  ShownNotifications shown_{200};
  // Incremented when the service exits, to discard its late replies: the next one numbers its
  // notifications anew.
  std::uint64_t run_ = 0;
  // By identifier: the deliveries that the service has not replied to, each with those waiting to
  // replace it.
  std::map<std::string, std::vector<Delivery>> pending_;
  // By identifier: the notifications that the service has shown after their add() had failed.
  std::map<std::string, UserNotification> shownLate_;
  std::vector<UseBus> waitingForBus_;
  // Null until the session bus is first needed.
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
  guint nameWatch_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
