#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <sys/types.h>

namespace navora::bench {

// In KiB. The anonymous part does not depend on how many other processes share the libraries.
struct MemoryUse {
  std::int64_t proportional = 0;
  std::int64_t anonymous = 0;

  MemoryUse& operator+=(const MemoryUse& other);
};

struct FamilyMemory {
  MemoryUse program;  // the process that owns the windows
  MemoryUse all;      // and with everything that it started
};

// During some time. Processes that end in it are left out.
struct FamilyActivity {
  std::int64_t processorTicks = 0;  // of all processes
  std::int64_t programWakeUps = 0;  // voluntary context switches of all its threads
  std::int64_t familyWakeUps = 0;
};

// What the living processes have done so far.
struct ActivityCounters {
  std::map<pid_t, std::int64_t> processorTicks;             // by process
  std::map<pid_t, std::map<pid_t, std::int64_t>> switches;  // by process and thread
};

// A program and the processes that descend from it: the engine's, and those of its sandbox.
class ProcessFamily {
 public:
  explicit ProcessFamily(pid_t program) : program_(program) {}

  std::vector<pid_t> members() const;
  bool sandboxed() const;
  FamilyMemory memory() const;
  ActivityCounters counters() const;
  FamilyActivity activitySince(const ActivityCounters& start) const;

 private:
  pid_t program_;
};

}  // namespace navora::bench
