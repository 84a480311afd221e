#include "bench/LaunchComparison.h"

#include <functional>
#include <ostream>
#include <utility>

#include "end_to_end/driver/OtherWindow.h"
#include "end_to_end/driver/ProcessTable.h"
#include "end_to_end/driver/ServiceClient.h"

namespace navora::bench {

namespace {

constexpr double kibPerMib = 1024;

// The table sorts its rows by these labels and omits the leading number.
constexpr const char* shown = "1 Window shown (ms)";
constexpr const char* loaded = "2 Page loaded (ms)";
constexpr const char* programMemory = "3 Memory of its own process (MiB)";
constexpr const char* programAnonymous = "4   of it anonymous (MiB)";
constexpr const char* allMemory = "5 Memory of all processes (MiB)";
constexpr const char* allAnonymous = "6   of it anonymous (MiB)";
constexpr const char* processorTime = "7 Idle: processor time (ms per minute)";
constexpr const char* programWakeUps = "8 Idle: wake-ups of its own process (per s)";
constexpr const char* familyWakeUps = "9 Idle: wake-ups of all processes (per s)";

}  // namespace

LaunchComparison::LaunchComparison(BenchmarkOptions options)
    : options_(std::move(options)),
      desktop_(options_.accessibility),
      drivenService_(BenchmarkService::Pages::withDriver),
      quietService_(BenchmarkService::Pages::withoutDriver) {}

void LaunchComparison::run(std::ostream& out) {
  // Warms the page cache, and creates the user data that the runs with kept data start from.
  for (const Program& program : programs(drivenService_))
    measureLaunch(program);
  for (const auto& [name, sandboxed] : sandboxed_) {
    out << name << " runs its pages " << (sandboxed ? "in the sandbox" : "without the sandbox")
        << '\n';
  }
  compare(out, Data::fresh);
  // The last fresh run has left the data of a single run.
  compare(out, Data::kept);
}

std::vector<Program> LaunchComparison::programs(const BenchmarkService& service) const {
  return {Program::navora(service.origin(), options_.navoraEnvironment),
          Program::surf(service.origin())};
}

void LaunchComparison::compare(std::ostream& out, Data data) {
  std::map<std::string, Comparison> comparisons;
  const auto measure = [&](int runs, const BenchmarkService& service,
                           const std::function<Figures(const Program&)>& figuresOf) {
    const std::vector<Program> pair = programs(service);
    for (int run = 0; run < runs; ++run) {
      for (const Program& program : pair) {
        prepare(program, data);
        for (const auto& [label, figure] : figuresOf(program)) {
          Comparison& comparison = comparisons[label];
          auto& figures = &program == &pair.front() ? comparison.navora : comparison.surf;
          figures.push_back(figure);
        }
      }
    }
  };
  measure(options_.runs, drivenService_,
          [this](const Program& program) { return measureLaunch(program); });
  measure(options_.idleRunCount(), quietService_,
          [this](const Program& program) { return measureIdle(program); });

  std::vector<Comparison> rows;
  for (auto& [label, comparison] : comparisons) {
    comparison.label = label.substr(label.find(' ') + 1);
    rows.push_back(std::move(comparison));
  }
  printTable(out, data == Data::fresh ? "Without existing user data" : "With existing user data",
             rows);
}

void LaunchComparison::prepare(const Program& program, Data data) {
  if (data == Data::kept) return;
  for (const std::string& folder : program.folders)
    desktop_.desktop().forget(folder);
}

LaunchComparison::Figures LaunchComparison::measureLaunch(const Program& program) {
  Launch launch(desktop_.desktop(), program);
  Figures figures;
  figures[shown] = launch.waitUntilShown();
  figures[loaded] = launch.waitUntilLoaded(drivenService_.origin());
  const FamilyMemory memory = launch.settledMemory();
  figures[programMemory] = static_cast<double>(memory.program.proportional) / kibPerMib;
  figures[programAnonymous] = static_cast<double>(memory.program.anonymous) / kibPerMib;
  figures[allMemory] = static_cast<double>(memory.all.proportional) / kibPerMib;
  figures[allAnonymous] = static_cast<double>(memory.all.anonymous) / kibPerMib;
  sandboxed_[program.name] = launch.sandboxed();
  return figures;
}

LaunchComparison::Figures LaunchComparison::measureIdle(const Program& program) {
  driver::ServiceClient service(quietService_.origin());
  service.clearRequests();
  Launch launch(desktop_.desktop(), program);
  launch.waitUntilShown();
  service.waitForRequests("GET", "/login");
  launch.settledMemory();
  // Takes the focus from the page's text field: the engine redraws a blinking caret many times a
  // second, which would hide the program's own activity.
  const driver::OtherWindow other(desktop_.desktop().display());
  launch.settledMemory();

  const FamilyActivity activity = launch.activity(options_.idleTime);
  const double seconds = static_cast<double>(options_.idleTime.count());
  const double processorSeconds =
      static_cast<double>(activity.processorTicks) / static_cast<double>(driver::ticksPerSecond());
  Figures figures;
  figures[processorTime] = processorSeconds * 1000 * 60 / seconds;
  figures[programWakeUps] = static_cast<double>(activity.programWakeUps) / seconds;
  figures[familyWakeUps] = static_cast<double>(activity.familyWakeUps) / seconds;
  return figures;
}

}  // namespace navora::bench
