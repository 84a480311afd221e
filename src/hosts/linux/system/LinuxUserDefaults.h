#pragma once

#include <filesystem>

#include "platform/UserDefaults.h"

namespace navora {

// User defaults in one JSON file, which every change replaces as a whole: a crash leaves the old
// values or the new ones. A file that is damaged is set aside under another name and reported on
// standard error; one that cannot be read stays untouched, and the values live in memory only.
class LinuxUserDefaults final : public UserDefaults {
 public:
  // In the user's configuration folder.
  LinuxUserDefaults();
  explicit LinuxUserDefaults(std::filesystem::path file);

  std::optional<Json> value(std::string_view key) const override;
  void setValue(std::string_view key, Json value) override;
  void removeValue(std::string_view key) override;

 private:
  void load();
  void setDamagedFileAside();
  void save();

  std::filesystem::path file_;
  Json values_ = Json::object();
  bool persistent_ = true;
};

}  // namespace navora
