#include "updates/UpdateReminderController.h"

#include <algorithm>
#include <utility>

namespace navora {
namespace {

constexpr UpdateReminderController::Delay shortestDelay{0.1};
constexpr UpdateReminderController::Delay retryWhileBusy{15};
// The timers of a queue stand still while the computer sleeps, and know nothing of a change of the
// clock. This is how late either is noticed.
constexpr UpdateReminderController::Delay longestTimer = std::chrono::minutes(10);

}  // namespace

UpdateReminderController::Schedule UpdateReminderController::scheduleTimer(MainQueue& queue) {
  return [&queue](Delay delay, std::function<void()> fire) {
    const Delay bounded = std::clamp(delay, Delay(0), longestTimer);
    // Rounded up, because a timer that fires a fraction early has to be set again.
    return queue.after(std::chrono::ceil<std::chrono::milliseconds>(bounded), std::move(fire));
  };
}

UpdateReminderController::UpdateReminderController(UpdateReminderPolicy& policy,
                                                   std::function<bool()> canCheck,
                                                   std::function<void()> check, Schedule schedule)
    : policy_(policy),
      canCheck_(std::move(canCheck)),
      check_(std::move(check)),
      schedule_(std::move(schedule)) {}

void UpdateReminderController::refresh() {
  scheduleNext(std::nullopt);
}

void UpdateReminderController::postpone(std::string_view version, UpdateReminderPolicy::Delay by) {
  policy_.postpone(version, by);
  refresh();
}

void UpdateReminderController::ignore(std::string_view version) {
  policy_.ignore(version);
  refresh();
}

void UpdateReminderController::observeEligibleVersion(std::string_view version) {
  policy_.observeEligibleVersion(version);
  refresh();
}

void UpdateReminderController::beginInstallation(std::string_view version) {
  policy_.beginInstallation(version);
  refresh();
}

void UpdateReminderController::scheduleNext(std::optional<Delay> retryDelay) {
  timer_.reset();
  const auto generation = ++generation_;
  const auto pending = policy_.pending();
  if (!pending) return;
  const Delay untilDue =
      policy_.isDue(*pending) ? shortestDelay : Delay(pending->deadline - policy_.now());
  const Delay delay = retryDelay.value_or(std::max(untilDue, shortestDelay));
  timer_ = schedule_(delay, lifetime_.guard([this, generation] {
    if (generation != generation_) return;
    timer_.reset();
    timerFired();
  }));
}

void UpdateReminderController::timerFired() {
  const auto pending = policy_.pending();
  if (!pending) return;
  if (!policy_.isDue(*pending)) {
    scheduleNext(std::nullopt);
  } else if (canCheck_()) {
    check_();
    // The version that the check finds may be offered again.
    policy_.consume(*pending);
    scheduleNext(std::nullopt);
  } else {
    scheduleNext(retryWhileBusy);
  }
}

}  // namespace navora
