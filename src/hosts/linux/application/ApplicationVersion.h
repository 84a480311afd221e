#pragma once

#include <optional>
#include <string>

#include "hosts/linux/installation/Installation.h"

namespace navora {

// The version of this program: its installation's, if it is one of its own, otherwise the build's.
std::string applicationVersion();
// The same for those who have the program's installation, or know that there is none.
std::string applicationVersion(const std::optional<Installation>& installation);

}  // namespace navora
