#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include <glib.h>

namespace navora {

// An answer that is given exactly once: by whoever is first, or by the main loop when the time is
// up.
template <typename Answer>
class CallbackWithTimeout {
 public:
  using Receiver = std::function<void(Answer)>;
  using Pointer = std::shared_ptr<CallbackWithTimeout>;

  static Pointer start(std::chrono::milliseconds patience, Receiver receiver, Answer whenLate) {
    auto answer = Pointer(new CallbackWithTimeout(std::move(receiver), std::move(whenLate)));
    answer->timer_ = g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(patience.count()),
                                        onTimer, new Pointer(answer), release);
    return answer;
  }
  CallbackWithTimeout(const CallbackWithTimeout&) = delete;
  CallbackWithTimeout& operator=(const CallbackWithTimeout&) = delete;

  bool isGiven() const { return !receiver_; }

  // Does nothing if an answer has been given.
  void give(Answer answer) {
    const Receiver receiver = std::exchange(receiver_, nullptr);
    if (const guint timer = std::exchange(timer_, 0)) g_source_remove(timer);
    if (receiver) receiver(std::move(answer));
  }

 private:
  CallbackWithTimeout(Receiver receiver, Answer whenLate)
      : receiver_(std::move(receiver)), whenLate_(std::move(whenLate)) {}

  static gboolean onTimer(gpointer pointer) {
    CallbackWithTimeout& self = **static_cast<Pointer*>(pointer);
    self.timer_ = 0;
    self.give(std::move(self.whenLate_));
    return G_SOURCE_REMOVE;
  }
  static void release(gpointer pointer) { delete static_cast<Pointer*>(pointer); }

  Receiver receiver_;
  Answer whenLate_;
  guint timer_ = 0;
};

}  // namespace navora
