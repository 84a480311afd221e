#include "updates/UpdateReminderPolicy.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace navora {
namespace {

constexpr std::string_view pendingKey = "navora.updateReminder.pending";
constexpr std::string_view ignoredKey = "navora.updateReminder.ignoredVersion";
// The day on which summer time ends has 25 hours. The rest allows for corrections of the clock.
constexpr std::chrono::hours longestPostponement{26};

}  // namespace

UpdateReminderPolicy::UpdateReminderPolicy(UserDefaults& defaults, std::function<Date()> clock,
                                           std::function<Calendar()> calendar)
    : defaults_(defaults), clock_(std::move(clock)), calendar_(std::move(calendar)) {}

Date UpdateReminderPolicy::now() const {
  return clock_();
}

std::optional<UpdateReminderPolicy::Pending> UpdateReminderPolicy::pending() const {
  const auto record = defaults_.value(pendingKey);
  if (!record) return std::nullopt;
  const auto version = stringMember(*record, "version");
  const auto deadline = numberMember(*record, "deadline");
  if (!version || !deadline || !std::isfinite(*deadline)) return std::nullopt;
  return Pending{*version, dateFromSecondsSince1970(*deadline)};
}

bool UpdateReminderPolicy::isDue(const Pending& postponed) const {
  const auto remaining = postponed.deadline - now();
  return remaining <= remaining.zero() || remaining > longestPostponement;
}

std::optional<std::string> UpdateReminderPolicy::ignoredVersion() const {
  const auto stored = defaults_.value(ignoredKey);
  if (!stored || !stored->is_string()) return std::nullopt;
  return stored->get<std::string>();
}

bool UpdateReminderPolicy::shouldOffer(std::string_view version, bool userInitiated) const {
  if (userInitiated) return true;
  if (ignoredVersion() == version) return false;
  const auto postponed = pending();
  return !postponed || postponed->version != version || isDue(*postponed);
}

std::optional<Date> UpdateReminderPolicy::deadline(Delay delay) const {
  switch (delay) {
    case Delay::hour:
      return now() + std::chrono::hours(1);
    case Delay::tomorrow:
      return calendar_().startOfNextDay(now());
  }
  return std::nullopt;
}

void UpdateReminderPolicy::postpone(std::string_view version, Delay by) {
  const auto until = deadline(by);
  if (!until) return;
  Json record = Json::object();
  record["version"] = version;
  record["deadline"] = secondsSince1970(*until);
  defaults_.setValue(pendingKey, std::move(record));
  stopIgnoring(version);
}

void UpdateReminderPolicy::ignore(std::string_view version) {
  defaults_.setValue(ignoredKey, Json(version));
  clearPending(version);
}

void UpdateReminderPolicy::clearPending(std::string_view version) {
  const auto postponed = pending();
  if (postponed && postponed->version == version) defaults_.removeValue(pendingKey);
}

void UpdateReminderPolicy::observeEligibleVersion(std::string_view version) {
  const auto postponed = pending();
  if (postponed && postponed->version != version) defaults_.removeValue(pendingKey);
}

void UpdateReminderPolicy::beginInstallation(std::string_view version) {
  clearPending(version);
  stopIgnoring(version);
}

void UpdateReminderPolicy::consume(const Pending& expected) {
  // The update may have been postponed again since `expected` was read.
  if (pending() != expected) return;
  if (isDue(expected)) defaults_.removeValue(pendingKey);
}

void UpdateReminderPolicy::stopIgnoring(std::string_view version) {
  if (ignoredVersion() == version) defaults_.removeValue(ignoredKey);
}

}  // namespace navora
