#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/MainQueue.h"
#include "support/CallbackAwaiter.h"
#include "support/Task.h"

namespace navora {

// Awaits an operation as awaitCallback() does, but yields nullopt if it has not called back within
// `limit`. The queue must outlive the task.
template <class Value>
Task<std::optional<Value>> awaitWithin(MainQueue& queue, std::chrono::milliseconds limit,
                                       std::function<void(Callback<Value>)> start) {
  std::unique_ptr<ObserverToken> timer;
  auto result =
      co_await awaitCallback<std::optional<Value>>([&](Callback<std::optional<Value>> done) {
        timer = queue.after(limit, [done] { done(std::nullopt); });
        start([done = std::move(done)](Value value) { done(std::move(value)); });
      });
  co_return std::move(result);
}

}  // namespace navora
