#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "support/Lifetime.h"

namespace navora {

// Wraps the reply blocks of one update session at a time. A wrapped callback forwards to its block
// while the session lasts and does nothing afterwards, so that its holder may call it at any time.
class UpdateSessionCallbacks {
 public:
  // Forwards the first call only, and then releases `callback`.
  template <typename... Values>
  std::function<void(Values...)> once(std::function<void(Values...)> callback) const {
    auto first = std::make_shared<std::function<void(Values...)>>(repeatable(std::move(callback)));
    return [first](Values... values) {
      if (const auto call = std::exchange(*first, nullptr)) call(std::move(values)...);
    };
  }

  template <typename... Values>
  std::function<void(Values...)> repeatable(std::function<void(Values...)> callback) const {
    return lifetime_.guard(std::move(callback));
  }

  // Disables every callback returned so far. The next one belongs to a new session.
  void endSession() { lifetime_.renew(); }

 private:
  Lifetime lifetime_;
};

}  // namespace navora
