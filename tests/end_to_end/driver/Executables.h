#pragma once

#include <filesystem>

namespace navora::driver {

// The programs under test: those of this build, or the ones that the environment variables
// NAVORA_EXECUTABLE and NAVORA_SERVICE_EXECUTABLE name. A TestError when there is none.
std::filesystem::path applicationExecutable();
std::filesystem::path serviceExecutable();

}  // namespace navora::driver
