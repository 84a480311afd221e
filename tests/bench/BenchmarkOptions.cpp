#include "bench/BenchmarkOptions.h"

#include <charconv>
#include <optional>

namespace navora::bench {

namespace {

constexpr int mostRuns = 1000;

std::optional<int> number(const std::string& text, int least) {
  int value = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || rest != text.data() + text.size()) return std::nullopt;
  return value >= least && value <= mostRuns ? std::optional(value) : std::nullopt;
}

// Sets the option and returns whether it exists and the value is valid.
bool accept(BenchmarkOptions& options, const std::string& name, const std::string& value) {
  if (name == "--runs") {
    const auto runs = number(value, 1);
    options.runs = runs.value_or(0);
    return runs.has_value();
  }
  if (name == "--idle-runs") {
    const auto runs = number(value, 0);
    options.idleRuns = runs.value_or(0);
    return runs.has_value();
  }
  if (name == "--idle-seconds") {
    const auto seconds = number(value, 1);
    options.idleTime = std::chrono::seconds(seconds.value_or(0));
    return seconds.has_value();
  }
  if (name == "--navora-environment") {
    const std::size_t equals = value.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    options.navoraEnvironment[value.substr(0, equals)] = value.substr(equals + 1);
    return true;
  }
  return false;
}

}  // namespace

std::variant<BenchmarkOptions, BenchmarkOptions::Help, BenchmarkOptions::Mistake>
BenchmarkOptions::parse(const std::vector<std::string>& arguments) {
  BenchmarkOptions options;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string& name = arguments[index];
    if (name == "--help") return Help{};
    if (name == "--accessibility") {
      options.accessibility = true;
      continue;
    }
    const std::string value = index + 1 < arguments.size() ? arguments[++index] : std::string();
    if (!accept(options, name, value)) return Mistake{"Cannot use " + name + " " + value};
  }
  return options;
}

std::string BenchmarkOptions::usage() {
  return "usage: navora-launch-benchmark [OPTION...]\n"
         "Compares the launch, the memory and the idle activity of Navora with those of surf.\n"
         "  --runs N                        measured launches of each program (10)\n"
         "  --idle-runs N                   launches that are left alone (as many as --runs)\n"
         "  --idle-seconds N                for how long (30)\n"
         "  --accessibility                 on a desktop with assistive technology\n"
         "  --navora-environment KEY=VALUE  for Navora only; can be repeated\n";
}

}  // namespace navora::bench
