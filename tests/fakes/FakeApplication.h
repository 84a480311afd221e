#pragma once

#include <vector>

#include "fakes/EventLog.h"
#include "platform/Application.h"

namespace navora {

class FakeApplication final : public Application {
 public:
  explicit FakeApplication(EventLog& log) : log_(log) {}

  const std::vector<Menu>& menus() const { return menus_; }
  const std::vector<AboutPanelOptions>& aboutPanels() const { return aboutPanels_; }
  // Acts as the user choosing an item of the main menu.
  void choose(DelegateAction action) { menuDelegate_->performMenuAction(action); }

  void activateIgnoringOtherApplications() override { log_.record("application.activate"); }
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) override {
    log_.record("application.setMainMenu");
    menus_ = menus;
    menuDelegate_ = &delegate;
  }
  void orderFrontStandardAboutPanel(const AboutPanelOptions& options) override {
    aboutPanels_.push_back(options);
  }

 private:
  EventLog& log_;
  std::vector<Menu> menus_;
  MenuDelegate* menuDelegate_ = nullptr;
  std::vector<AboutPanelOptions> aboutPanels_;
};

}  // namespace navora
