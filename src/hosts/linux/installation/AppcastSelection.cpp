#include "hosts/linux/installation/AppcastSelection.h"

#include <algorithm>

#include "hosts/linux/installation/VersionOrder.h"

namespace navora {
namespace {

bool hasReached(const AppcastEntry& entry, const AppcastSelection::Conditions& conditions) {
  if (conditions.userInitiated || entry.isCritical) return true;
  if (!entry.phasedRolloutInterval || !entry.published) return true;
  return conditions.now >=
         *entry.published + conditions.rolloutGroup * *entry.phasedRolloutInterval;
}

bool mayBeOffered(const AppcastEntry& entry, const AppcastSelection::Conditions& conditions) {
  // The application has no setting for a channel, so only the default one is offered.
  return entry.channel.empty() && compareVersions(entry.version, conditions.currentVersion) > 0 &&
         compareVersions(entry.minimumSystemVersion, conditions.systemVersion) <= 0 &&
         hasReached(entry, conditions);
}

}  // namespace

std::optional<AppcastEntry> AppcastSelection::choose(const std::vector<AppcastEntry>& entries,
                                                     const Conditions& conditions) {
  const AppcastEntry* newest = nullptr;
  for (const AppcastEntry& entry : entries) {
    if (!mayBeOffered(entry, conditions)) continue;
    if (newest == nullptr || compareVersions(entry.version, newest->version) > 0) newest = &entry;
  }
  return newest == nullptr ? std::nullopt : std::optional(*newest);
}

bool AppcastSelection::isInformational(const AppcastEntry& entry, std::string_view currentVersion) {
  const InformationalUpdate& informational = entry.informational;
  const auto isCurrent = [&](const std::string& version) {
    return compareVersions(currentVersion, version) == 0;
  };
  const auto isAboveCurrent = [&](const std::string& version) {
    return compareVersions(currentVersion, version) < 0;
  };
  return !entry.archive || informational.forAll ||
         std::ranges::any_of(informational.versions, isCurrent) ||
         std::ranges::any_of(informational.belowVersions, isAboveCurrent);
}

}  // namespace navora
