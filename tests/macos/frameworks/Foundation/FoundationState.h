#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace navora::doubles {

// The machine and the user's session as the doubles of Foundation show them, and what was recorded.
// Returns to these initial values after every test.
struct FoundationState {
  static FoundationState& shared();

  // What was written to the system log.
  std::vector<std::string> logged = {};

  // Language tags in descending order of preference.
  std::vector<std::string> preferredLanguages = {"en"};
  // Changed by changeTimeZone().
  std::string timeZone = "Europe/Moscow";
  // Whether resetting the cached time zone posts the notification of a change even if the zone is
  // the same. The documentation does not exclude it, and open implementations do it.
  bool resettingTimeZonePostsNotification = false;

  // The folder of the main bundle's resources; empty if the bundle has none.
  std::filesystem::path resources = {};
  // The texts of the main bundle's Info.plist.
  std::map<std::string, std::string> informationPropertyList = {};
  // Where the folders for replacing files are made.
  std::filesystem::path temporaryItems = std::filesystem::temp_directory_path();
};

// Acts as the system when the user travels or chooses another time zone.
void changeTimeZone(const std::string& identifier);

}  // namespace navora::doubles
