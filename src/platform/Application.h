#pragma once

#include <vector>

#include "platform/AboutPanel.h"
#include "platform/Menu.h"

namespace navora {

// What a launch of the program is for.
enum class LaunchPurpose {
  application,
  // Opens the quick capture panel, of the running instance if there is one.
  capture,
};

// What the desktop tells the application.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;

  virtual void applicationDidFinishLaunching() = 0;
  // The user starts the running application again; true lets the platform do its usual part too.
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
  // Another launch asks the running application for the quick capture panel.
  virtual void applicationDidReceiveCaptureRequest() = 0;
  virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
  virtual void applicationDidBecomeActive() = 0;
  virtual void applicationWillTerminate() = 0;
};

// The running application, seen from the core.
class Application {
 public:
  virtual ~Application() = default;

  // Brings the application in front of all others.
  virtual void activateIgnoringOtherApplications() = 0;

  // Replaces all menus. The delegate must outlive the application's run.
  virtual void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) = 0;
  virtual void orderFrontStandardAboutPanel(const AboutPanelOptions& options) = 0;
};

}  // namespace navora
