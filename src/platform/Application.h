#pragma once

#include <string>
#include <vector>

#include "platform/Menu.h"

namespace navora {

// Why the program was launched.
enum class LaunchPurpose {
  application,
  // To show the capture panel, in the running instance if there is one.
  capture,
};

// The contents of the About panel.
struct AboutPanelOptions {
  std::string applicationName;
  // Plain text; may have several lines.
  std::string credits;

  bool operator==(const AboutPanelOptions&) const = default;
};

// Receives the desktop's events for the application. Called on the main thread.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;

  virtual void applicationDidFinishLaunching() = 0;
  // The user launched the application while it was running. Returns true to let the platform do its
  // default handling too.
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
  // A second launch asked the running application for the capture panel.
  virtual void applicationDidReceiveCaptureRequest() = 0;
  virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
  virtual void applicationDidBecomeActive() = 0;
  virtual void applicationWillTerminate() = 0;
};

// The running application, seen from the core.
class Application {
 public:
  virtual ~Application() = default;

  // Activates the application and brings its windows in front of all others.
  virtual void activateIgnoringOtherApplications() = 0;

  // Replaces all menus. The delegate must outlive the application's main loop.
  virtual void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) = 0;
  // Shows the platform's own About panel, or updates the one that is open.
  virtual void orderFrontStandardAboutPanel(const AboutPanelOptions& options) = 0;
};

}  // namespace navora
