#include "notifications/DesktopNotificationDelivery.h"

#include <utility>

namespace navora {

bool DesktopNotificationDelivery::baseline(const std::set<std::string>& ids) {
  if (records_->baselined) return false;
  records_->seen.insert(ids.begin(), ids.end());
  records_->baselined = true;
  return true;
}

void DesktopNotificationDelivery::ignore(const std::string& id) {
  records_->seen.insert(id);
}

void DesktopNotificationDelivery::Records::settle(const std::string& id, const Result& result) {
  if (!result) seen.insert(id);
  pending.erase(id);
}

Task<DesktopNotificationDelivery::Result> DesktopNotificationDelivery::deliver(std::string id,
                                                                               Enqueue enqueue) {
  const auto records = records_;
  if (records->seen.contains(id) || !records->pending.insert(id).second) co_return std::nullopt;
  co_return co_await awaitCallback<Result>([&](Callback<Result> done) {
    enqueue([records, id, done = std::move(done)](Result result) {
      records->settle(id, result);
      done(std::move(result));
    });
  });
}

}  // namespace navora
