#pragma once

#include <functional>

#include "platform/Menu.h"

namespace navora {

// Performs the menu actions on the whole application. Both functions are set; either may destroy
// the menu that calls it.
struct ApplicationCommands {
  std::function<void()> hide;
  std::function<void()> terminate;

  void perform(ApplicationAction action) const {
    switch (action) {
      case ApplicationAction::hide:
        return hide();
      case ApplicationAction::terminate:
        return terminate();
    }
  }
};

}  // namespace navora
