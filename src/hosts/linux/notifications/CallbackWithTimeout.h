#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include <glib.h>

namespace navora {

// A callback that is called exactly once: by the first call(), or by the main loop with a default
// result when the time is up. Destroyed after that call, once no pointer is left.
template <typename Result>
class CallbackWithTimeout {
 public:
  using Callback = std::function<void(Result)>;
  using Pointer = std::shared_ptr<CallbackWithTimeout>;

  static Pointer start(std::chrono::milliseconds timeout, Callback callback, Result onTimeout) {
    auto pointer = Pointer(new CallbackWithTimeout(std::move(callback), std::move(onTimeout)));
    pointer->timer_ = g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(timeout.count()),
                                         timedOut, new Pointer(pointer), release);
    return pointer;
  }
  CallbackWithTimeout(const CallbackWithTimeout&) = delete;
  CallbackWithTimeout& operator=(const CallbackWithTimeout&) = delete;

  bool wasCalled() const { return !callback_; }

  // Does nothing if the callback has been called. The callback may drop the last pointer.
  void call(Result result) {
    const Callback callback = std::exchange(callback_, nullptr);
    if (const guint timer = std::exchange(timer_, 0)) g_source_remove(timer);
    if (callback) callback(std::move(result));
  }

 private:
  CallbackWithTimeout(Callback callback, Result onTimeout)
      : callback_(std::move(callback)), onTimeout_(std::move(onTimeout)) {}

  static gboolean timedOut(gpointer pointer) {
    CallbackWithTimeout& self = **static_cast<Pointer*>(pointer);
    self.timer_ = 0;
    self.call(std::move(self.onTimeout_));
    return G_SOURCE_REMOVE;
  }
  static void release(gpointer pointer) { delete static_cast<Pointer*>(pointer); }

  Callback callback_;
  Result onTimeout_;
  guint timer_ = 0;
};

}  // namespace navora
