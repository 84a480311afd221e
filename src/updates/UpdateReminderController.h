#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"
#include "support/Lifetime.h"
#include "updates/UpdateReminderPolicy.h"

namespace navora {

// Offers a postponed update again at its deadline while the application is running: keeps one
// timer, set to the stored deadline, that starts a check in the background. Callers change the
// stored reminder through this class, which resets the timer accordingly.
class UpdateReminderController {
 public:
  using Delay = std::chrono::duration<double>;  // seconds
  // Calls `fire` once on the main thread after the delay. Destroying the token cancels the timer.
  using Schedule =
      std::function<std::unique_ptr<ObserverToken>(Delay delay, std::function<void()> fire)>;

  // Returns a Schedule that uses timers of `queue`, which must outlive it. A timer may fire early:
  // none is set for longer than ten minutes, after which the clock is read again.
  static Schedule scheduleTimer(MainQueue& queue);

  // The policy must outlive this object. `canCheck` returns whether a check may start now; `check`
  // starts one. Sets no timer before the first call of a member function.
  UpdateReminderController(UpdateReminderPolicy& policy, std::function<bool()> canCheck,
                           std::function<void()> check, Schedule schedule);

  // Sets the timer for the reminder that the policy has stored, or clears it if there is none.
  // To be called when the clock may have moved otherwise than the timer, as it does during sleep.
  void refresh();

  // Each calls the policy's function of the same name, then `refresh`.
  void postpone(std::string_view version, UpdateReminderPolicy::Delay by);
  void ignore(std::string_view version);
  void observeEligibleVersion(std::string_view version);
  void beginInstallation(std::string_view version);

  bool shouldOffer(std::string_view version, bool userInitiated) const {
    return policy_.shouldOffer(version, userInitiated);
  }

 private:
  void scheduleNext(std::optional<Delay> retryDelay);
  void timerFired();

  UpdateReminderPolicy& policy_;
  const std::function<bool()> canCheck_;
  const std::function<void()> check_;
  const Schedule schedule_;
  std::unique_ptr<ObserverToken> timer_;
  // Incremented for every timer, so that one that fires after it was replaced does nothing.
  std::int64_t generation_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
