#pragma once

#include <functional>
#include <vector>

#include "platform/Menu.h"

namespace navora {

class RecordingMenuDelegate final : public MenuDelegate {
 public:
  void performMenuAction(MenuAction action) override {
    actions.push_back(action);
    if (onAction) onAction();
  }

  std::vector<MenuAction> actions;
  std::function<void()> onAction;
};

}  // namespace navora
