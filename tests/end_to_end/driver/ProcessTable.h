#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora::driver {

// Facts about running processes, from the kernel's process table.
struct ProcessInfo {
  pid_t pid = 0;
  pid_t parent = 0;
  std::string name;  // of the executable, cut off after 15 characters by the kernel
};

// The living processes that descend from `ancestor`, without itself, parents first.
std::vector<ProcessInfo> descendantsOf(pid_t ancestor);

// False for a process that has ended, even when nobody has taken note of its end.
bool isAlive(pid_t pid);

// The process's share of memory in KiB (pages shared with n processes count for a n-th); nothing
// when it is gone.
std::optional<std::int64_t> proportionalMemoryKiB(pid_t pid);

// Processor time used so far, in clock ticks; `ticksPerSecond` of them make a second.
std::optional<std::int64_t> processorTicks(pid_t pid);
std::int64_t ticksPerSecond();

}  // namespace navora::driver
