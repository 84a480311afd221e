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

// Remembers which of one account's notifications have been dealt with, so that each is shown at
// most once and what is older than the ledger never. Lasts no longer than the process.
class DesktopNotificationDelivery {
 public:
  using Result = std::optional<PlatformError>;
  // Hands a notification to the desktop; called with where to report how that went.
  using Enqueue = std::function<void(Callback<Result>)>;

  // The first call takes all `ids` as dealt with and returns true; later ones change nothing.
  bool baseline(const std::set<std::string>& ids);
  // Never to be shown.
  void ignore(const std::string& id);
  // Enqueues what is neither dealt with nor just being enqueued. After a failure, which is
  // returned, the next call tries again. An enqueuing that has begun is taken note of even if
  // nobody awaits this task, or this ledger is gone, when it ends.
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
