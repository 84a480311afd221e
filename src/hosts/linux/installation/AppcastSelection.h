#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/installation/Appcast.h"
#include "support/Date.h"

namespace navora {

// Chooses the release to offer among those of a feed.
class AppcastSelection {
 public:
  // The user's place in a release that reaches people step by step: from 0 for the first.
  static constexpr int rolloutGroups = 7;

  struct Conditions {
    std::string currentVersion;
    std::string systemVersion;
    Date now;
    int rolloutGroup = 0;
    // Who asks does not wait for their turn.
    bool userInitiated = false;
  };

  // The newest release above the current version that may be offered under the conditions.
  static std::optional<AppcastEntry> choose(const std::vector<AppcastEntry>& entries,
                                            const Conditions& conditions);

  // Whether the release can only be read about by those who have `currentVersion`.
  static bool isInformational(const AppcastEntry& entry, std::string_view currentVersion);
};

}  // namespace navora
