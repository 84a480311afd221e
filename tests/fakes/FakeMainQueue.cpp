#include "fakes/FakeMainQueue.h"

#include <algorithm>

namespace navora {

class FakeMainQueue::Token final : public ObserverToken {
 public:
  Token(std::weak_ptr<Pending> pending, Key key) : pending_(std::move(pending)), key_(key) {}
  ~Token() override {
    const auto pending = pending_.lock();
    if (!pending) return;
    // Destroyed after the lock is released: what the work captured may destroy other tokens.
    std::map<Key, Work>::node_type cancelled;
    const std::lock_guard lock(pending->mutex);
    cancelled = pending->works.extract(key_);
  }
  Token(const Token&) = delete;
  Token& operator=(const Token&) = delete;

 private:
  std::weak_ptr<Pending> pending_;
  Key key_;
};

FakeMainQueue::Key FakeMainQueue::add(std::chrono::milliseconds delay, Work work) {
  const std::lock_guard lock(pending_->mutex);
  const Key key{pending_->now + delay, ++pending_->lastId};
  pending_->works.emplace(key, std::move(work));
  return key;
}

FakeMainQueue::Work FakeMainQueue::takeDueBy(std::chrono::milliseconds time) {
  const std::lock_guard lock(pending_->mutex);
  auto& works = pending_->works;
  if (works.empty() || works.begin()->first.first > time) return nullptr;
  auto next = works.extract(works.begin());
  pending_->now = std::max(pending_->now, next.key().first);
  return std::move(next.mapped());
}

void FakeMainQueue::async(Work work) {
  add(std::chrono::milliseconds(0), std::move(work));
}

std::unique_ptr<ObserverToken> FakeMainQueue::after(std::chrono::milliseconds delay, Work work) {
  return std::make_unique<Token>(pending_, add(delay, std::move(work)));
}

void FakeMainQueue::runDue() {
  advance(std::chrono::milliseconds(0));
}

void FakeMainQueue::advance(std::chrono::milliseconds time) {
  const auto end = elapsed() + time;
  while (const Work work = takeDueBy(end))
    work();
  const std::lock_guard lock(pending_->mutex);
  pending_->now = std::max(pending_->now, end);
}

std::size_t FakeMainQueue::pendingCount() const {
  const std::lock_guard lock(pending_->mutex);
  return pending_->works.size();
}

std::chrono::milliseconds FakeMainQueue::elapsed() const {
  const std::lock_guard lock(pending_->mutex);
  return pending_->now;
}

}  // namespace navora
