#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora::driver {

// A running process, as listed in /proc.
struct ProcessInfo {
  pid_t pid = 0;
  pid_t parent = 0;
  std::string name;  // of the executable; the kernel keeps 15 characters
};

// Returns the running descendants of `ancestor`, parents first.
std::vector<ProcessInfo> descendantsOf(pid_t ancestor);

// Returns whether a process is running; false for a zombie.
bool isAlive(pid_t pid);

// Returns the proportional set size of a process in KiB, or nullopt if it has exited.
std::optional<std::int64_t> proportionalMemoryKiB(pid_t pid);

// What a process holds.
struct ResourceUse {
  // The pages that it has written. Those that it has only read, of libraries above all, become
  // private and shared again as other processes come and go.
  std::int64_t privateMemoryKiB = 0;
  std::int64_t descriptors = 0;
  std::int64_t threads = 0;
};

// Returns nullopt if the process has exited.
std::optional<ResourceUse> resourceUse(pid_t pid);

// Returns the processor time used so far, in clock ticks of 1/ticksPerSecond() s.
std::optional<std::int64_t> processorTicks(pid_t pid);
std::int64_t ticksPerSecond();

}  // namespace navora::driver
