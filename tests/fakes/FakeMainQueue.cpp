#include "fakes/FakeMainQueue.h"

namespace navora {

class FakeMainQueue::Token final : public ObserverToken {
 public:
  Token(std::weak_ptr<Pending> pending, Key key) : pending_(std::move(pending)), key_(key) {}
  ~Token() override {
    if (const auto pending = pending_.lock()) pending->erase(key_);
  }
  Token(const Token&) = delete;
  Token& operator=(const Token&) = delete;

 private:
  std::weak_ptr<Pending> pending_;
  Key key_;
};

FakeMainQueue::Key FakeMainQueue::add(std::chrono::milliseconds delay, std::function<void()> work) {
  const Key key{now_ + delay, ++lastId_};
  pending_->emplace(key, std::move(work));
  return key;
}

void FakeMainQueue::async(std::function<void()> work) {
  add(std::chrono::milliseconds(0), std::move(work));
}

std::unique_ptr<ObserverToken> FakeMainQueue::after(std::chrono::milliseconds delay,
                                                    std::function<void()> work) {
  return std::make_unique<Token>(pending_, add(delay, std::move(work)));
}

void FakeMainQueue::runDue() {
  while (!pending_->empty() && pending_->begin()->first.first <= now_) {
    const auto work = std::move(pending_->begin()->second);
    pending_->erase(pending_->begin());
    work();
  }
}

void FakeMainQueue::advance(std::chrono::milliseconds time) {
  const auto end = now_ + time;
  while (!pending_->empty() && pending_->begin()->first.first <= end) {
    now_ = pending_->begin()->first.first;
    runDue();
  }
  now_ = end;
}

}  // namespace navora
