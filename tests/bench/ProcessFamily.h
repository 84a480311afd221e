#pragma once

#include <cstdint>
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

// Since the start of the processes.
struct FamilyActivity {
  std::int64_t processorTicks = 0;  // of all processes
  std::int64_t programWakeUps = 0;  // voluntary context switches of all its threads
  std::int64_t familyWakeUps = 0;
};

// A program and the processes that descend from it: the engine's, and those of its sandbox.
class ProcessFamily {
 public:
  explicit ProcessFamily(pid_t program) : program_(program) {}

  std::vector<pid_t> members() const;
  bool sandboxed() const;
  FamilyMemory memory() const;
  FamilyActivity activity() const;

 private:
  pid_t program_;
};

}  // namespace navora::bench
