#pragma once

#include <string>

namespace navora {

struct AboutPanelOptions {
  std::string applicationName;
  // Plain lines.
  std::string credits;

  bool operator==(const AboutPanelOptions&) const = default;
};

}  // namespace navora
