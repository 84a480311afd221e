#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/UserDefaults.h"
#include "support/Calendar.h"
#include "support/Date.h"

namespace navora {

// Decides whether an available update may be offered now, and stores the user's answers: one
// postponement and one ignored version. Its whole state is in the user defaults, so it persists
// across launches. Versions are compared as plain texts.
class UpdateReminderPolicy {
 public:
  // A postponed update and the time from which it may be offered again.
  struct Pending {
    std::string version;
    Date deadline;
    bool operator==(const Pending&) const = default;
  };

  enum class Delay {
    hour,
    // Until the next midnight in the user's calendar.
    tomorrow
  };

  // The defaults must outlive the policy. `clock` and `calendar` are called at every use.
  UpdateReminderPolicy(UserDefaults& defaults, std::function<Date()> clock,
                       std::function<Calendar()> calendar);

  Date now() const;
  // Returns the stored postponement. Returns nullopt for a record that cannot be read, without
  // removing it.
  std::optional<Pending> pending() const;
  // Returns whether the deadline has come, or is further ahead than any postponement reaches: then
  // the clock has been set back, or the record is damaged.
  bool isDue(const Pending& postponed) const;

  // Returns whether `version` may be offered now: always in a check that the user started,
  // otherwise unless it is ignored, or postponed and not due.
  bool shouldOffer(std::string_view version, bool userInitiated) const;

  // Replaces any earlier postponement and stops ignoring the version. Does nothing if the calendar
  // has no next midnight.
  void postpone(std::string_view version, Delay by);
  // Ignores the version until another one is ignored, or this one is postponed or installed, and
  // removes its postponement.
  void ignore(std::string_view version);
  // Removes the postponement of this version.
  void clearPending(std::string_view version);
  // Removes the postponement of any other version: this one supersedes it.
  void observeEligibleVersion(std::string_view version);
  // Removes the postponement of this version and stops ignoring it.
  void beginInstallation(std::string_view version);
  // Removes the reminder `expected` if it is still the stored one and due.
  void consume(const Pending& expected);

 private:
  std::optional<std::string> ignoredVersion() const;
  std::optional<Date> deadline(Delay delay) const;
  void stopIgnoring(std::string_view version);

  UserDefaults& defaults_;
  const std::function<Date()> clock_;
  const std::function<Calendar()> calendar_;
};

}  // namespace navora
