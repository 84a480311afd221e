#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/installation/Appcast.h"
#include "support/Date.h"

namespace navora {

// Chooses the release to offer from a feed.
class AppcastSelection {
 public:
  // Number of groups in a phased rollout.
  static constexpr int rolloutGroups = 7;

  struct Conditions {
    std::string currentVersion;
    std::string systemVersion;
    Date now;
    // The user's group, from 0 for the first.
    int rolloutGroup = 0;
    // Ignores the phased rollout.
    bool userInitiated = false;
  };

  // Returns the newest release above the current version that meets the conditions.
  static std::optional<AppcastEntry> choose(const std::vector<AppcastEntry>& entries,
                                            const Conditions& conditions);

  // Returns whether the release is only announced to users of `currentVersion`.
  static bool isInformational(const AppcastEntry& entry, std::string_view currentVersion);
};

}  // namespace navora
