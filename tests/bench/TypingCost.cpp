#include "bench/TypingCost.h"

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "tests/support/Wait.h"

namespace navora::bench {

namespace {

constexpr std::chrono::milliseconds pause{200};

// From schedstat, which counts in nanoseconds; clock ticks are too coarse.
double mainThreadMilliseconds(pid_t program) {
  const std::string process = std::to_string(program);
  std::ifstream counters("/proc/" + process + "/task/" + process + "/schedstat");
  double nanoseconds = 0;
  if (!(counters >> nanoseconds)) throw TestError("No scheduler statistics for process " + process);
  return nanoseconds / 1e6;
}

// The cost of the blinking caret is included in both measurements, and so cancels out.
double spentDuring(int pauses, pid_t program, const auto& beforeEach) {
  const double start = mainThreadMilliseconds(program);
  for (int count = 0; count < pauses; ++count) {
    beforeEach();
    std::this_thread::sleep_for(pause);
  }
  return mainThreadMilliseconds(program) - start;
}

}  // namespace

double typingCost(driver::Keyboard& keyboard, pid_t program, int keys) {
  const double idle = spentDuring(keys, program, [] {});
  const double typing = spentDuring(keys, program, [&] { keyboard.type("x"); });
  return (typing - idle) / keys;
}

}  // namespace navora::bench
