#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/ObserverToken.h"

namespace navora {

// The observers of one event.
class FakeObservers {
 public:
  std::unique_ptr<ObserverToken> add(std::function<void()> callback) {
    const int id = ++lastId_;
    callbacks_->emplace(id, std::move(callback));
    return std::make_unique<Token>(callbacks_, id);
  }

  std::size_t count() const { return callbacks_->size(); }

  // Calls the callbacks in the order of registration. A callback may remove any registration,
  // including its own; removed ones are not called, and added ones only by the next notify().
  void notify() const {
    const Callbacks present = *callbacks_;
    for (const auto& [id, callback] : present)
      if (callbacks_->contains(id)) callback();
  }

 private:
  using Callbacks = std::map<int, std::function<void()>>;

  class Token final : public ObserverToken {
   public:
    Token(std::weak_ptr<Callbacks> callbacks, int id) : callbacks_(std::move(callbacks)), id_(id) {}
    ~Token() override {
      if (const auto callbacks = callbacks_.lock()) callbacks->erase(id_);
    }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;

   private:
    std::weak_ptr<Callbacks> callbacks_;
    int id_;
  };

  std::shared_ptr<Callbacks> callbacks_ = std::make_shared<Callbacks>();
  int lastId_ = 0;
};

}  // namespace navora
