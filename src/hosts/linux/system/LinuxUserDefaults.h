#pragma once

#include <filesystem>

#include "platform/UserDefaults.h"

namespace navora {

// User defaults in one JSON file. Every change replaces the file atomically, so a crash leaves
// either the old values or the new ones. A damaged file is renamed to "….damaged" and reported on
// standard error. A file that cannot be read is reported and never written; values are then kept in
// memory.
class LinuxUserDefaults final : public UserDefaults {
 public:
  // Uses navora/defaults.json in XDG_CONFIG_HOME.
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
