#include "support/SelfTest.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace navora {
namespace {

void writeLine(std::FILE* stream, std::string_view label, std::string_view text) {
  const std::string line = std::string(label).append(text).append("\n");
  std::fwrite(line.data(), 1, line.size(), stream);
  std::fflush(stream);
}

}  // namespace

void SelfTest::check(bool condition, std::string_view description) {
  if (!condition) {
    writeLine(stderr, "FAIL: ", description);
    std::exit(1);
  }
  ++count_;
}

void SelfTest::pass(std::string_view verdict) {
  writeLine(stdout, "PASS: ", verdict);
}

}  // namespace navora
