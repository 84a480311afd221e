#pragma once

#include <functional>
#include <vector>

#include "platform/Menu.h"

namespace navora {

class RecordingMenuDelegate final : public MenuDelegate {
 public:
  void performMenuAction(DelegateAction action) override {
    actions.push_back(action);
    if (onAction) onAction();
  }

  std::vector<DelegateAction> actions;
  std::function<void()> onAction;
};

}  // namespace navora
