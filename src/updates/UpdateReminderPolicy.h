#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/UserDefaults.h"
#include "support/Calendar.h"
#include "support/Date.h"

namespace navora {

// Decides whether a found update may be offered now, and remembers what the user answered: one
// postponement and one ignored version. Everything it knows is in the defaults, so it lasts over
// launches. Versions are compared as they are written.
class UpdateReminderPolicy {
 public:
  // A postponed update and the moment from which it may be offered again.
  struct Pending {
    std::string version;
    Date deadline;
    bool operator==(const Pending&) const = default;
  };

  enum class Delay {
    hour,
    // Until the next midnight of the user's calendar.
    tomorrow
  };

  // The defaults must outlive the policy; the callbacks are asked at every use.
  UpdateReminderPolicy(UserDefaults& defaults, std::function<Date()> clock,
                       std::function<Calendar()> calendar);

  Date now() const;
  // None as well for a stored record that cannot be read; reading does not remove it.
  std::optional<Pending> pending() const;

  // A check that the user started always shows what it found.
  bool shouldOffer(std::string_view version, bool userInitiated) const;

  // Replaces any earlier postponement and takes back that the version is ignored. Does nothing if
  // the calendar has no next midnight.
  void postpone(std::string_view version, Delay by);
  // Until another version is ignored, or this one is postponed or installed.
  void ignore(std::string_view version);
  // Forgets the postponement of this version.
  void clearPending(std::string_view version);
  // This version is the one to offer: a postponement of another one means nothing any more.
  void observeEligibleVersion(std::string_view version);
  // The user wants this version: it is neither postponed nor ignored any more.
  void beginInstallation(std::string_view version);
  // The reminder `expected` was waited for: removes it, if it is still the stored one and due.
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
