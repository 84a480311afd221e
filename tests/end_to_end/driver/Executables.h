#pragma once

#include <filesystem>

namespace navora::driver {

// Return the programs under test: those of this build, or those that the environment variables
// NAVORA_EXECUTABLE and NAVORA_SERVICE_EXECUTABLE name. Throw TestError if there is none.
std::filesystem::path applicationExecutable();
std::filesystem::path serviceExecutable();

}  // namespace navora::driver
