#include "bench/ProcessFamily.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

#include "end_to_end/driver/ProcessTable.h"
#include "tests/support/Files.h"

namespace navora::bench {

namespace {

std::filesystem::path folderOf(pid_t pid) {
  return std::filesystem::path("/proc") / std::to_string(pid);
}

// Returns the number in the line "NAME   number", or 0 if there is no such line, as for a process
// that has ended.
std::int64_t field(const std::string& text, std::string_view name) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name)) return std::stoll(line.substr(name.size()));
  }
  return 0;
}

MemoryUse memoryOf(pid_t pid) {
  const std::string text = readFile(folderOf(pid) / "smaps_rollup");
  return {field(text, "Pss:"), field(text, "Pss_Anon:")};
}

std::map<pid_t, std::int64_t> switchesOf(pid_t pid) {
  std::map<pid_t, std::int64_t> found;
  std::error_code ended;
  for (const auto& thread : std::filesystem::directory_iterator(folderOf(pid) / "task", ended)) {
    const std::string status = readFile(thread.path() / "status");
    found[std::stoi(thread.path().filename())] = field(status, "voluntary_ctxt_switches:");
  }
  return found;
}

// Counters start at 0, so a process or thread that is new counts in full.
std::int64_t growth(const std::map<pid_t, std::int64_t>& now,
                    const std::map<pid_t, std::int64_t>& before) {
  std::int64_t sum = 0;
  for (const auto& [id, count] : now) {
    const auto earlier = before.find(id);
    sum += count - (earlier == before.end() ? 0 : earlier->second);
  }
  return sum;
}

}  // namespace

MemoryUse& MemoryUse::operator+=(const MemoryUse& other) {
  proportional += other.proportional;
  anonymous += other.anonymous;
  return *this;
}

std::vector<pid_t> ProcessFamily::members() const {
  std::vector<pid_t> found{program_};
  for (const driver::ProcessInfo& process : driver::descendantsOf(program_)) {
    found.push_back(process.pid);
  }
  return found;
}

bool ProcessFamily::sandboxed() const {
  const auto descendants = driver::descendantsOf(program_);
  return std::any_of(descendants.begin(), descendants.end(),
                     [](const driver::ProcessInfo& process) { return process.name == "bwrap"; });
}

FamilyMemory ProcessFamily::memory() const {
  FamilyMemory sum;
  sum.program = memoryOf(program_);
  for (pid_t pid : members())
    sum.all += memoryOf(pid);
  return sum;
}

ActivityCounters ProcessFamily::counters() const {
  ActivityCounters counters;
  for (pid_t pid : members()) {
    counters.switches[pid] = switchesOf(pid);
    if (const auto ticks = driver::processorTicks(pid)) counters.processorTicks[pid] = *ticks;
  }
  return counters;
}

FamilyActivity ProcessFamily::activitySince(const ActivityCounters& start) const {
  const ActivityCounters now = counters();
  FamilyActivity activity;
  activity.processorTicks = growth(now.processorTicks, start.processorTicks);
  for (const auto& [pid, switches] : now.switches) {
    const auto earlier = start.switches.find(pid);
    const std::int64_t count =
        growth(switches,
               earlier == start.switches.end() ? std::map<pid_t, std::int64_t>() : earlier->second);
    if (pid == program_) activity.programWakeUps = count;
    activity.familyWakeUps += count;
  }
  return activity;
}

}  // namespace navora::bench
