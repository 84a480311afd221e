#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "end_to_end/driver/BusService.h"

namespace navora::driver {

// Implements org.freedesktop.Notifications: records what it is asked to show, and acts on
// notifications as a user does.
class FakeNotificationDaemon {
 public:
  struct Notification {
    std::uint32_t id = 0;
    std::string applicationName;
    std::uint32_t replacesId = 0;
    std::string icon;
    std::string summary;
    std::string body;
    std::vector<std::string> actions;
    // The values in GVariant text format.
    std::map<std::string, std::string> hints;
    std::int32_t expireTimeout = 0;
  };

  explicit FakeNotificationDaemon(const std::string& sessionBusAddress,
                                  std::vector<std::string> capabilities = {"actions", "body",
                                                                           "body-markup"});
  ~FakeNotificationDaemon();
  FakeNotificationDaemon(const FakeNotificationDaemon&) = delete;
  FakeNotificationDaemon& operator=(const FakeNotificationDaemon&) = delete;

  // Returns all notifications so far, in order.
  std::vector<Notification> notifications() const;
  // Returns the ids of those that are on the screen: neither the user nor a program has closed
  // them.
  std::vector<std::uint32_t> open() const;

  // Delays the replies to calls of a method until release().
  void hold(const std::string& method = "Notify");
  void release();
  std::size_t waitingCount() const;

  // Invokes an action. If there is a token, ActivationToken is emitted first.
  void click(std::uint32_t id, const std::string& action = "default",
             const std::string& activationToken = {});
  void close(std::uint32_t id);

 private:
  void closeForProgram(GVariant* parameters, GDBusMethodInvocation* invocation);
  void answer(const std::string& method, GVariant* parameters, GDBusMethodInvocation* invocation);
  GVariant* reply(const std::string& method, GVariant* parameters);
  GVariant* show(GVariant* parameters);

  const std::vector<std::string> capabilities_;
  mutable std::mutex mutex_;
  std::vector<Notification> notifications_;
  std::vector<std::uint32_t> open_;
  std::uint32_t lastId_ = 0;
  std::string heldMethod_;
  // With their delayed replies.
  std::vector<std::pair<GDBusMethodInvocation*, GVariant*>> waiting_;
  std::unique_ptr<BusService> service_;
};

}  // namespace navora::driver
