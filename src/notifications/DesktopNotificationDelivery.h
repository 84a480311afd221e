#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/PlatformError.h"
#include "support/CallbackAwaiter.h"
#include "support/Task.h"

namespace navora {

// The ledger of one account's notifications: each is shown at most once, and those from before the
// ledger was begun are never shown. Kept in memory only.
class DesktopNotificationDelivery {
 public:
  using Result = std::optional<PlatformError>;
  // Hands a notification to the desktop and calls the callback once with the result, nullopt for
  // success.
  using Enqueue = std::function<void(Callback<Result>)>;

  // Returns whether `baseline` has been called.
  bool isBaselined() const { return records_->baselined; }
  // Marks all `ids` as seen and returns true; every later call changes nothing and returns false.
  bool baseline(const std::set<std::string>& ids);
  // Marks the id as seen, so that it is never shown.
  void ignore(const std::string& id);
  // Enqueues the notification unless its id is seen or being enqueued. Returns the error of a
  // failed attempt, after which the next call tries again. The result of a pending enqueue is
  // recorded even if the task or the ledger is destroyed first.
  Task<Result> deliver(std::string id, Enqueue enqueue);

 private:
  struct Records {
    std::set<std::string> seen;
    std::set<std::string> pending;
    bool baselined = false;

    void settle(const std::string& id, const Result& result);
  };

  std::shared_ptr<Records> records_ = std::make_shared<Records>();
};

}  // namespace navora
