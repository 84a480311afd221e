#include "end_to_end/driver/Executables.h"

#include <cstdlib>

#include <unistd.h>

#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

std::filesystem::path executable(const char* variable, const char* built) {
  const char* named = std::getenv(variable);
  const std::filesystem::path path = named && *named ? named : built;
  if (path.empty() || access(path.c_str(), X_OK) != 0) {
    throw TestError("No program to test at \"" + path.string() + "\"; build it or set " + variable);
  }
  return std::filesystem::absolute(path);
}

}  // namespace

std::filesystem::path applicationExecutable() {
  return executable("NAVORA_EXECUTABLE", NAVORA_EXECUTABLE);
}

std::filesystem::path serviceExecutable() {
  return executable("NAVORA_SERVICE_EXECUTABLE", NAVORA_SERVICE_EXECUTABLE);
}

}  // namespace navora::driver
