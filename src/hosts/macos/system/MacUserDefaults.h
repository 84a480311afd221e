#pragma once

#include "platform/UserDefaults.h"

namespace navora {

// The standard user defaults. Values are stored as property lists. These have no null, so a value
// that contains one is stored as its JSON text.
class MacUserDefaults final : public UserDefaults {
 public:
  std::optional<Json> value(std::string_view key) const override;
  void setValue(std::string_view key, Json value) override;
  void removeValue(std::string_view key) override;
};

}  // namespace navora
