#pragma once

#import <AppKit/AppKit.h>

#include "hosts/macos/application/MacMenus.h"
#include "platform/Application.h"

@class NavoraApplicationForwarder;

namespace navora {

class MacApplication final : public Application {
 public:
  MacApplication();
  ~MacApplication() override;
  MacApplication(const MacApplication&) = delete;
  MacApplication& operator=(const MacApplication&) = delete;

  // Runs the event loop as an ordinary Dock application, with `delegate` told of its life cycle.
  // Quitting ends the process, so this normally does not return.
  int run(ApplicationDelegate& delegate);

  void activateIgnoringOtherApplications() override;
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) override;
  void orderFrontStandardAboutPanel(const AboutPanelOptions& options) override;

 private:
  NSApplication* application_;
  NavoraApplicationForwarder* forwarder_;
  MacMenus menus_;
};

}  // namespace navora
