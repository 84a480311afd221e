#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/MainQueue.h"

namespace navora {

// A queue with a clock that only the test advances.
class FakeMainQueue final : public MainQueue {
 public:
  void async(std::function<void()> work) override;
  std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay,
                                       std::function<void()> work) override;

  // Runs all work that is due, in the order of its time, including work that this adds.
  void runDue();
  void advance(std::chrono::milliseconds time);

  std::size_t pendingCount() const { return pending_->size(); }
  std::chrono::milliseconds elapsed() const { return now_; }

 private:
  using Key = std::pair<std::chrono::milliseconds, int>;
  using Pending = std::map<Key, std::function<void()>>;
  class Token;

  Key add(std::chrono::milliseconds delay, std::function<void()> work);

  std::shared_ptr<Pending> pending_ = std::make_shared<Pending>();
  std::chrono::milliseconds now_{0};
  int lastId_ = 0;
};

}  // namespace navora
