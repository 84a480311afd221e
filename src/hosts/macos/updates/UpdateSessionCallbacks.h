#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "support/Lifetime.h"

namespace navora {

// Makes callbacks that may be called whatever became of an update session of those that an updater
// hands out, which it wants to hear from once and while the session lasts. Those of a session that
// ended do nothing.
class UpdateSessionCallbacks {
 public:
  // Only the first call counts.
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

  void endSession() { lifetime_.renew(); }

 private:
  Lifetime lifetime_;
};

}  // namespace navora
