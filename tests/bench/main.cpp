// Compares Navora with surf, the smallest browser on the same web engine, in one run on one
// machine: how soon the window and the page are there, how much memory they take, how idle they
// are.
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
