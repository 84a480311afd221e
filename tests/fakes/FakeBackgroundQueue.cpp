#include "fakes/FakeBackgroundQueue.h"

#include <thread>
#include <utility>

#include "support/FatalError.h"

namespace navora {

void FakeBackgroundQueue::run(std::function<void()> work, std::function<void()> completion) {
  jobs_.add(std::move(work), std::move(completion));
  ++waiting_;
}

void FakeBackgroundQueue::workOnNext() {
  if (waiting_ == 0) fatalError("No background work is pending", "FakeBackgroundQueue", __LINE__);
  std::thread([this] { jobs_.workOnNext(); }).join();
  --waiting_;
  ++worked_;
}

void FakeBackgroundQueue::completeNext() {
  if (worked_ == 0) fatalError("No background work has finished", "FakeBackgroundQueue", __LINE__);
  --worked_;
  jobs_.completeNext();
}

void FakeBackgroundQueue::drain() {
  while (waiting_ > 0)
    workOnNext();
}

void FakeBackgroundQueue::finishAll() {
  while (waiting_ + worked_ > 0) {
    if (worked_ == 0) workOnNext();
    completeNext();
  }
}

}  // namespace navora
