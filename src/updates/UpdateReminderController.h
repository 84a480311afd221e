#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"
#include "support/Lifetime.h"
#include "updates/UpdateReminderPolicy.h"

namespace navora {

// Brings a postponed update back at its deadline while the application is running: one timer, aimed
// at the stored postponement, that starts a check in the background.
class UpdateReminderController {
 public:
  using Delay = std::chrono::duration<double>;  // seconds
  // Calls `fire` once on the main thread after the delay, unless the token is released first.
  using Schedule =
      std::function<std::unique_ptr<ObserverToken>(Delay delay, std::function<void()> fire)>;

  // Timers of the queue, which must outlive whatever uses them. They may fire early: none runs
  // longer than a day, because hosts count in whole numbers of a limited size.
  static Schedule scheduleTimer(MainQueue& queue);

  // The policy must outlive this object. `canCheck` says whether a check may start now; `check`
  // starts it.
  UpdateReminderController(UpdateReminderPolicy& policy, std::function<bool()> canCheck,
                           std::function<void()> check, Schedule schedule);

  // To be called after every change of what the policy has stored.
  void refresh();

 private:
  void scheduleNext(std::optional<Delay> retryDelay);
  void timerFired();

  UpdateReminderPolicy& policy_;
  const std::function<bool()> canCheck_;
  const std::function<void()> check_;
  const Schedule schedule_;
  std::unique_ptr<ObserverToken> timer_;
  // Counts the timers, so that one that fires although it was replaced does nothing.
  std::int64_t generation_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
