#include "end_to_end/driver/UpdatableInstallation.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "end_to_end/driver/ChildProcess.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

using std::filesystem::path;

void run(const std::vector<std::string>& command) {
  ChildProcess::Options options;
  options.arguments = command;
  options.environment = baseEnvironment();
  ChildProcess program(options);
  if (program.wait() != ChildProcess::ExitStatus{0, 0})
    throw TestError("\"" + command.front() + "\" has failed");
}

std::string makeUpdate() {
  return (path(NAVORA_BUILD_FOLDER) / "bin/navora-make-update").string();
}

bool isNumber(const std::string& text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

path installBuild(const path& folder) {
  run({NAVORA_CMAKE, "--install", NAVORA_BUILD_FOLDER, "--strip", "--prefix", folder.string()});
  return folder;
}

path developmentUpdateKey() {
  return path(NAVORA_SOURCE_FOLDER) / "tools/development-update-key";
}

void makeUpdateKey(const path& file) {
  run({makeUpdate(), "key", file.string()});
}

UpdatableInstallation::UpdatableInstallation(path folder, const path& built,
                                             const std::string& version)
    : folder_(std::move(folder)) {
  std::filesystem::create_directories(releases());
  std::filesystem::create_directories(this->folder().parent_path());
  std::filesystem::copy(built, this->folder(), std::filesystem::copy_options::recursive);
  writeFile(this->folder() / "installation.json", nlohmann::json{{"version", version}}.dump());
}

std::string UpdatableInstallation::version() const {
  return nlohmann::json::parse(readFile(folder() / "installation.json")).value("version", "");
}

std::vector<std::string> UpdatableInstallation::leftovers() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder().parent_path())) {
    if (entry.path() != folder()) names.push_back(entry.path().filename());
  }
  return names;
}

std::vector<pid_t> UpdatableInstallation::runningPrograms() const {
  std::vector<pid_t> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    std::error_code error;
    if (isNumber(name) && std::filesystem::read_symlink(entry.path() / "exe", error) == program()) {
      found.push_back(static_cast<pid_t>(std::stol(name)));
    }
  }
  return found;
}

bool UpdatableInstallation::isInstallerRunning() const {
  // The executable itself is moved while it runs; the command line stays.
  const std::string target = '\0' + folder().string() + '\0';
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    if (!isNumber(entry.path().filename())) continue;
    const std::string commandLine = readFile(entry.path() / "cmdline");
    const std::string program = commandLine.substr(0, commandLine.find('\0'));
    if (program.ends_with("/navora-install-update") &&
        commandLine.find(target) != std::string::npos)
      return true;
  }
  return false;
}

void UpdatableInstallation::release(const path& built, const std::string& version,
                                    const path& key) const {
  run({makeUpdate(), "release", "--installation", built.string(), "--version", version, "--key",
       key.string(), "--url", ".", "--output", releases().string()});
}

}  // namespace navora::driver
