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

// Notifications over the desktop's notification service on the session bus. The desktop asks nobody
// for permission: what a running (or startable) service offers is authorized, its absence denied.
class LinuxNotificationCenter final : public NotificationCenter {
 public:
  LinuxNotificationCenter() = default;
  ~LinuxNotificationCenter() override;

  LinuxNotificationCenter(const LinuxNotificationCenter&) = delete;
  LinuxNotificationCenter& operator=(const LinuxNotificationCenter&) = delete;

  // Whoever has not answered within this time counts as absent. For the questions from now on.
  void setPatience(std::chrono::milliseconds patience) { patience_ = patience; }

  void setDelegate(NotificationCenterDelegate* delegate) override { delegate_ = delegate; }
  void requestAuthorization(Options options,
                            std::function<void(AuthorizationResult)> completion) override;
  void authorizationStatus(std::function<void(AuthorizationStatus)> completion) override;
  // Fails when the service is late, but does not forget what it was given: if it shows the
  // notification after all, a second attempt takes the place of the first.
  void add(const UserNotification& notification,
           std::function<void(std::optional<PlatformError>)> completion) override;

 private:
  using AddAnswer = CallbackWithTimeout<std::optional<PlatformError>>::Pointer;
  // Gets null, and the reason, where there is no session bus.
  using UseBus = std::function<void(GDBusConnection* bus, const GError* error)>;

  // A notification on its way to the service.
  struct Delivery {
    UserNotification notification;
    NotificationCapabilities capabilities;
    bool sound = false;
    AddAnswer answer;
  };

  void withBus(UseBus use);
  static void onBus(GObject* source, GAsyncResult* result, gpointer data);
  void listen(GDBusConnection* bus);
  PresentationOptions presentation() const;
  void deliver(Delivery delivery);
  void delivered(const Delivery& delivery, std::uint64_t run, GVariant* reply, const GError* error);

  static void onSignal(GDBusConnection* bus, const char* sender, const char* path,
                       const char* interface, const char* signal, GVariant* parameters,
                       gpointer self);
  static void onVanished(GDBusConnection* bus, const char* name, gpointer self);

  std::chrono::milliseconds patience_ = std::chrono::seconds(5);
  NotificationCenterDelegate* delegate_ = nullptr;
  // More than any desktop keeps on the screen or in its list. Of the service that runs now.
  ShownNotifications shown_{200};
  // Changes whenever the service ends: another one counts anew.
  std::uint64_t run_ = 0;
  // By identifier, those that the service has not answered yet, with what waits to replace them.
  std::map<std::string, std::vector<Delivery>> underWay_;
  std::vector<UseBus> waitingForBus_;
  // Once there has been one.
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
  guint nameWatch_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
