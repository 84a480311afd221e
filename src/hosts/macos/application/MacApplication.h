#pragma once

#import <AppKit/AppKit.h>

#include "platform/Application.h"

@class NavoraApplicationForwarder;
@class NavoraMenuTarget;

namespace navora {

class MacApplication final : public Application {
 public:
  MacApplication();
  ~MacApplication() override;
  MacApplication(const MacApplication&) = delete;
  MacApplication& operator=(const MacApplication&) = delete;

  // Runs the event loop as an ordinary Dock application and reports its life cycle to `delegate`.
  // Normally does not return, because quitting terminates the process.
  int run(ApplicationDelegate& delegate);

  void activateIgnoringOtherApplications() override;
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) override;
  void orderFrontStandardAboutPanel(const AboutPanelOptions& options) override;

 private:
  NSApplication* application_;
  NavoraApplicationForwarder* forwarder_;
  NavoraMenuTarget* menuTarget_;
};

}  // namespace navora
