#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/ObserverToken.h"

namespace navora {

// The observers of one system event.
class FakeObservers {
 public:
  std::unique_ptr<ObserverToken> add(std::function<void()> callback) {
    const int id = ++lastId_;
    callbacks_->emplace(id, std::move(callback));
    return std::make_unique<Token>(callbacks_, id);
  }

  std::size_t count() const { return callbacks_->size(); }

  // Calls them in the order of their registration. A callback may end any registration, its own
  // too: those that it ended are not called any more, those that it added wait for the next event.
  void notify() const {
    const Callbacks present = *callbacks_;
    for (const auto& [id, callback] : present) {
      if (callbacks_->contains(id)) callback();
    }
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
