// Compares Navora with surf, a minimal browser on the same web engine: the time to the window and
// to the loaded page, the memory use, and the activity when idle.
#include <exception>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "bench/BenchmarkOptions.h"
#include "bench/LaunchComparison.h"
#include "bench/Program.h"

using navora::bench::BenchmarkOptions;

int main(int argumentCount, char** arguments) {
  const auto parsed =
      BenchmarkOptions::parse(std::vector<std::string>(arguments + 1, arguments + argumentCount));
  if (std::holds_alternative<BenchmarkOptions::Help>(parsed)) {
    std::cout << BenchmarkOptions::usage();
    return 0;
  }
  if (const auto* mistake = std::get_if<BenchmarkOptions::Mistake>(&parsed)) {
    std::cerr << mistake->message << '\n' << BenchmarkOptions::usage();
    return 2;
  }
  try {
    navora::bench::requireSurf();
    navora::bench::LaunchComparison(std::get<BenchmarkOptions>(parsed)).run(std::cout);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "The comparison ended early: " << failure.what() << '\n';
    return 1;
  }
}
