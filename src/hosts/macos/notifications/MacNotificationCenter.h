#pragma once

#import <UserNotifications/UserNotifications.h>

#include "platform/NotificationCenter.h"
#include "support/Lifetime.h"

@class NavoraNotificationForwarder;

namespace navora {

// The system's notification center. Requires a bundled application: elsewhere the system raises an
// exception. At most one per process, because the system's center has a single delegate.
class MacNotificationCenter final : public NotificationCenter {
 public:
  MacNotificationCenter();
  ~MacNotificationCenter() override;
  MacNotificationCenter(const MacNotificationCenter&) = delete;
  MacNotificationCenter& operator=(const MacNotificationCenter&) = delete;

  void setDelegate(NotificationCenterDelegate* _Nullable delegate) override;
  void requestAuthorization(Options options,
                            std::function<void(AuthorizationResult)> completion) override;
  void authorizationStatus(std::function<void(AuthorizationStatus)> completion) override;
  void add(const UserNotification& notification,
           std::function<void(std::optional<PlatformError>)> completion) override;

 private:
  UNUserNotificationCenter* _Nonnull center_;
  NavoraNotificationForwarder* _Nonnull forwarder_;
  Lifetime lifetime_;
};

}  // namespace navora
