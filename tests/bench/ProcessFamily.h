#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <sys/types.h>

namespace navora::bench {

// In KiB.
struct MemoryUse {
  // PSS: pages shared between processes count in proportion.
  std::int64_t proportional = 0;
  // The part not backed by files, which is independent of other users of the same libraries.
  std::int64_t anonymous = 0;

  MemoryUse& operator+=(const MemoryUse& other);
};

struct FamilyMemory {
  MemoryUse program;  // the process that owns the windows
  MemoryUse all;      // that process and all its descendants
};

// The activity within a period. Processes that end within it are not counted.
struct FamilyActivity {
  std::int64_t processorTicks = 0;  // of all processes
  std::int64_t programWakeUps = 0;  // voluntary context switches of all its threads
  std::int64_t familyWakeUps = 0;
};

// The counters of the running processes since their start.
struct ActivityCounters {
  std::map<pid_t, std::int64_t> processorTicks;             // by process
  std::map<pid_t, std::map<pid_t, std::int64_t>> switches;  // by process and thread
};

// A program and its descendants: the processes of the web engine and of its sandbox.
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
