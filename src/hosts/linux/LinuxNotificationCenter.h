#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/GLibSupport.h"
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

  void setDelegate(NotificationCenterDelegate* delegate) override { delegate_ = delegate; }
  void requestAuthorization(Options options,
                            std::function<void(AuthorizationResult)> completion) override;
  void authorizationStatus(std::function<void(AuthorizationStatus)> completion) override;
  // Waits for the service as long as that lives: to give up on a slow one and try again would show
  // the notification twice.
  void add(const UserNotification& notification,
           std::function<void(std::optional<PlatformError>)> completion) override;

 private:
  // What the service can do.
  struct Capabilities {
    bool actions = false;
    bool markup = false;
  };
  struct Shown {
    std::string identifier;
    std::string url;
  };
  using AddCompletion = std::function<void(std::optional<PlatformError>)>;

  // Null where there is no session bus.
  void withBus(std::function<void(GDBusConnection*)> use);
  void listen(GDBusConnection* bus);
  void findService(GDBusConnection* bus, std::function<void(bool)> found);
  PresentationOptions presentation() const;
  void notify(GDBusConnection* bus, const UserNotification& notification, Capabilities capabilities,
              bool sound, AddCompletion completion);
  void remember(std::uint32_t id, const UserNotification& notification);
  std::uint32_t replacedId(const std::string& identifier) const;
  void actionInvoked(std::uint32_t id, const std::string& action);

  static void onActionInvoked(GDBusConnection* bus, const char* sender, const char* path,
                              const char* interface, const char* signal, GVariant* parameters,
                              gpointer self);
  static void onClosed(GDBusConnection* bus, const char* sender, const char* path,
                       const char* interface, const char* signal, GVariant* parameters,
                       gpointer self);
  static void onVanished(GDBusConnection* bus, const char* name, gpointer self);

  NotificationCenterDelegate* delegate_ = nullptr;
  // By the service's own numbers; only of the service that runs now.
  std::map<std::uint32_t, Shown> shown_;
  GObjectPtr<GDBusConnection> bus_;
  guint actionSubscription_ = 0;
  guint closedSubscription_ = 0;
  guint nameWatch_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
