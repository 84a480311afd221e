#pragma once

#include <functional>

namespace navora {

// What the host does to the whole application when a menu says so. Both are set, and may end the
// menu that calls them.
struct ApplicationCommands {
  std::function<void()> hide;
  std::function<void()> terminate;
};

}  // namespace navora
