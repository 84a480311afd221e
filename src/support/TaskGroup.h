#pragma once

#include <vector>

#include "support/Task.h"

namespace navora {

// Owns tasks that nobody awaits; they end with it.
class TaskGroup {
 public:
  void add(Task<> task);

  // How many tasks have not finished.
  std::size_t runningCount() const;

 private:
  std::vector<Task<>> tasks_;
};

}  // namespace navora
