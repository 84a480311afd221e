#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/MainQueue.h"

namespace navora {

// A queue whose clock stands still until the test advances it.
class FakeMainQueue final : public MainQueue {
 public:
  using Work = std::function<void()>;

  void async(Work work) override;
  std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay, Work work) override;

  // Runs what is due, including what that adds for the same time, in the order of its time.
  void runDue();
  void advance(std::chrono::milliseconds time);

  std::size_t pendingCount() const;
  std::chrono::milliseconds elapsed() const;

 private:
  using Key = std::pair<std::chrono::milliseconds, int>;
  class Token;

  struct Pending {
    std::mutex mutex;  // guards the rest, because async() may be called on any thread
    std::map<Key, Work> works;
    std::chrono::milliseconds now{0};
    int lastId = 0;
  };

  Key add(std::chrono::milliseconds delay, Work work);
  // Advances the clock to the first work that is due at `time` or before, and removes it. Returns
  // null without one.
  Work takeDueBy(std::chrono::milliseconds time);

  std::shared_ptr<Pending> pending_ = std::make_shared<Pending>();
};

}  // namespace navora
