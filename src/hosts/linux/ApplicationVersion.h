#pragma once

#include <string>

namespace navora {

// The version of this program: its installation's, if it is one of its own, otherwise the build's.
std::string applicationVersion();

}  // namespace navora
