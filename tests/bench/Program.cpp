#include "bench/Program.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <unistd.h>

#include "end_to_end/driver/Executables.h"

namespace navora::bench {

Program Program::navora(const std::string& origin, driver::Environment additional) {
  additional["NAVORA_URL"] = origin + "/";
  return {"Navora", {driver::applicationExecutable()}, std::move(additional), {"navora"}};
}

Program Program::surf(const std::string& origin) {
  return {"surf", {"surf", origin + "/login"}, {}, {"surf", ".surf"}};
}

void requireSurf() {
  const char* search = std::getenv("PATH");
  std::istringstream folders(search ? search : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (access((std::filesystem::path(folder) / "surf").c_str(), X_OK) == 0) return;
  }
  throw TestError(
      "The browser surf, with which the launch is compared, is not installed: "
      "apt-get install surf");
}

}  // namespace navora::bench
