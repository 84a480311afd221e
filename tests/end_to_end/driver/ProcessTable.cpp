#include "end_to_end/driver/ProcessTable.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>

#include <unistd.h>

#include "tests/support/Files.h"

namespace navora::driver {

namespace {

struct Status {
  ProcessInfo info;
  char state = 'X';
  std::int64_t ticks = 0;
};

std::filesystem::path folderOf(pid_t pid) {
  return std::filesystem::path("/proc") / std::to_string(pid);
}

std::optional<Status> statusOf(pid_t pid) {
  // "pid (name) state parent ...": the name may contain parentheses.
  const std::string line = readFile(folderOf(pid) / "stat");
  const std::size_t open = line.find('(');
  const std::size_t close = line.rfind(')');
  if (open == std::string::npos || close == std::string::npos) return std::nullopt;
  Status status;
  status.info.pid = pid;
  status.info.name = line.substr(open + 1, close - open - 1);
  std::istringstream fields(line.substr(close + 1));
  fields >> status.state >> status.info.parent;
  // Skip fields 5 to 13.
  std::string skipped;
  for (int field = 5; field <= 13; ++field)
    fields >> skipped;
  std::int64_t user = 0;
  std::int64_t system = 0;
  fields >> user >> system;
  status.ticks = user + system;
  return status;
}

bool ended(char state) {
  return state == 'Z' || state == 'X';
}

std::vector<ProcessInfo> allProcesses() {
  std::vector<ProcessInfo> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    pid_t pid = 0;
    const auto [rest, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error != std::errc() || *rest != '\0') continue;
    const auto status = statusOf(pid);
    if (status && !ended(status->state)) found.push_back(status->info);
  }
  return found;
}

}  // namespace

std::vector<ProcessInfo> descendantsOf(pid_t ancestor) {
  std::vector<ProcessInfo> remaining = allProcesses();
  std::vector<ProcessInfo> found;
  std::set<pid_t> family{ancestor};
  for (bool grown = true; grown;) {
    const auto split = std::stable_partition(
        remaining.begin(), remaining.end(),
        [&](const ProcessInfo& process) { return family.count(process.parent) == 0; });
    grown = split != remaining.end();
    for (auto process = split; process != remaining.end(); ++process) {
      family.insert(process->pid);
      found.push_back(*process);
    }
    remaining.erase(split, remaining.end());
  }
  return found;
}

bool isAlive(pid_t pid) {
  const auto status = statusOf(pid);
  return status && !ended(status->state);
}

std::optional<std::int64_t> proportionalMemoryKiB(pid_t pid) {
  std::istringstream lines(readFile(folderOf(pid) / "smaps_rollup"));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Pss:")) return std::stoll(line.substr(4));
  }
  return std::nullopt;
}

std::optional<ResourceUse> resourceUse(pid_t pid) {
  const auto countEntries = [&](const char* folder) {
    std::error_code error;
    const std::filesystem::directory_iterator entries(folderOf(pid) / folder, error);
    return static_cast<std::int64_t>(std::distance(begin(entries), end(entries)));
  };
  ResourceUse use;
  std::istringstream lines(readFile(folderOf(pid) / "smaps_rollup"));
  bool found = false;
  for (std::string line; std::getline(lines, line);) {
    const std::string name = "Private_Dirty:";
    if (!line.starts_with(name)) continue;
    use.privateMemoryKiB = std::stoll(line.substr(name.size()));
    found = true;
  }
  if (!found) return std::nullopt;
  use.descriptors = countEntries("fd");
  use.threads = countEntries("task");
  return use;
}

std::optional<std::int64_t> processorTicks(pid_t pid) {
  const auto status = statusOf(pid);
  return status ? std::optional(status->ticks) : std::nullopt;
}

std::int64_t ticksPerSecond() {
  return sysconf(_SC_CLK_TCK);
}

}  // namespace navora::driver
