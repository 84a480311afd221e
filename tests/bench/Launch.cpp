#include "bench/Launch.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <thread>

#include <signal.h>

#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ProcessTable.h"

namespace navora::bench {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
using driver::Json;

// Returns the end of the load event in milliseconds since 1970. Waits for it, because the driver
// may run before the page has finished loading.
constexpr const char* loadedScript = R"(
  for (;;) {
    const [navigation] = performance.getEntriesByType('navigation');
    if (navigation && navigation.loadEventEnd > 0) {
      return performance.timeOrigin + navigation.loadEventEnd;
    }
    await new Promise((resume) => setTimeout(resume, 20));
  }
)";

constexpr std::chrono::milliseconds sampleInterval{500};
constexpr int quietSamples = 4;
constexpr std::chrono::seconds longestSettling{40};

bool within1Percent(std::int64_t value, std::int64_t reference) {
  return std::llabs(value - reference) * 100 <= reference;
}

bool allEnded(const std::vector<pid_t>& pids) {
  return std::none_of(pids.begin(), pids.end(), driver::isAlive);
}

}  // namespace

Launch::Launch(driver::VirtualDesktop& desktop, const Program& program)
    : desktop_(desktop),
      watch_(desktop.display()),
      wallStart_(std::chrono::system_clock::now()),
      start_(std::chrono::steady_clock::now()),
      process_(desktop.start(program.command, program.environment)),
      family_(process_->pid()) {}

Launch::~Launch() {
  // No process of this run may be left in the next one.
  const std::vector<pid_t> members = family_.members();
  process_->terminate();
  if (!becomesTrue([&] { return allEnded(members); }, std::chrono::seconds(5))) {
    for (pid_t pid : members) {
      if (driver::isAlive(pid)) ::kill(pid, SIGKILL);
    }
  }
}

double Launch::waitUntilShown() {
  return Milliseconds(watch_.waitFor(process_->pid()) - start_).count();
}

double Launch::waitUntilLoaded(const std::string& origin) {
  driver::PageDriver page(desktop_, origin, [] { return driver::Rectangle{}; });
  const double start = Milliseconds(wallStart_.time_since_epoch()).count();
  const auto loaded = [&]() -> std::optional<double> {
    const auto answer = page.tryEvaluate(loadedScript, std::chrono::seconds(2));
    // Discard an answer from the page of the previous run.
    if (!answer || !answer->is_number() || answer->get<double>() < start) return std::nullopt;
    return answer->get<double>() - start;
  };
  return waitFor(loaded, process_->name() + " has loaded the page", defaultTimeout(),
                 [this] { return process_->errorText(); });
}

FamilyMemory Launch::settledMemory() const {
  const auto deadline = std::chrono::steady_clock::now() + longestSettling;
  FamilyMemory reference = family_.memory();
  int quiet = 0;
  // A program that never settles is reported with its last figure.
  while (quiet < quietSamples && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(sampleInterval);
    const FamilyMemory sample = family_.memory();
    const bool same = within1Percent(sample.program.proportional, reference.program.proportional) &&
                      within1Percent(sample.all.proportional, reference.all.proportional);
    quiet = same ? quiet + 1 : 0;
    if (!same) reference = sample;
  }
  return family_.memory();
}

FamilyActivity Launch::activity(std::chrono::seconds duration) const {
  const ActivityCounters start = family_.counters();
  std::this_thread::sleep_for(duration);
  if (!process_->running()) throw TestError(process_->name() + " ended while idle");
  return family_.activitySince(start);
}

}  // namespace navora::bench
