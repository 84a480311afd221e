#pragma once

#include <string_view>

namespace navora {

// One run of the built-in checks of a policy. Counts the checks, so that a verdict can state the
// number that ran.
class SelfTest {
 public:
  // Unless the condition holds: writes "FAIL: <description>" to standard error and exits the
  // process with status 1.
  void check(bool condition, std::string_view description);

  int count() const { return count_; }

  // Prints "PASS: <verdict>". Written out at once, because a later self-test may abort.
  static void pass(std::string_view verdict);

 private:
  int count_ = 0;
};

}  // namespace navora
