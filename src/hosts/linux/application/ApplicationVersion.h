#pragma once

#include <optional>
#include <string>

#include "hosts/linux/installation/Installation.h"

namespace navora {

// Returns the version of the running program: that of the installation it belongs to, or the
// build's where it belongs to none.
std::string applicationVersion();
// The same for callers that have the result of Installation::ofThisProgram().
std::string applicationVersion(const std::optional<Installation>& installation);

}  // namespace navora
