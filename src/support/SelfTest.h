#pragma once

#include <string_view>

namespace navora {

// Runs the built-in checks of a policy and counts them, so that the result can state their number.
class SelfTest {
 public:
  // If the condition is false, writes "FAIL: <description>" to standard error and exits the process
  // with status 1.
  void check(bool condition, std::string_view description);

  int count() const { return count_; }

  // Prints "PASS: <verdict>", flushed because a later self-test may abort.
  static void pass(std::string_view verdict);

 private:
  int count_ = 0;
};

}  // namespace navora
