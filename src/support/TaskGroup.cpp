#include "support/TaskGroup.h"

#include <algorithm>
#include <utility>

namespace navora {

void TaskGroup::add(Task<> task) {
  std::erase_if(tasks_, [](const Task<>& old) { return !old.isRunning(); });
  tasks_.push_back(std::move(task));
}

std::size_t TaskGroup::runningCount() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(tasks_, [](const Task<>& task) { return task.isRunning(); }));
}

}  // namespace navora
