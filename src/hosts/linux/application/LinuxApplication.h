#pragma once

#include <optional>
#include <vector>

#include <gtkmm/application.h>

#include "hosts/linux/application/AboutDialog.h"
#include "hosts/linux/application/HiddenWindows.h"
#include "hosts/linux/application/MenuBar.h"
#include "platform/Application.h"

namespace navora {

class LinuxMainWindow;

// The application as a single instance, registered on the session bus under its application id: a
// second launch activates the running instance.
class LinuxApplication final : public Application {
 public:
  LinuxApplication();
  ~LinuxApplication() override;

  LinuxApplication(const LinuxApplication&) = delete;
  LinuxApplication& operator=(const LinuxApplication&) = delete;

  // Runs the main loop until the application quits and returns the exit status. In a second
  // instance returns at once without calling the delegate, which must outlive the call.
  int run(ApplicationDelegate& delegate, LaunchPurpose purpose);

  // Adds the menu bar to the main window and reports to the delegate when one of the application's
  // windows becomes active. The window must outlive the application's run.
  void watch(LinuxMainWindow& window);
  // Makes the menus' keys work in the capture panel, which must outlive the application's run. The
  // panel takes the keyboard focus without activating the application.
  void watchPanel(Gtk::Window& panel);

  void activateIgnoringOtherApplications() override;
  // The first call must precede watch(), which adds the menu bar to the window.
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) override;
  void orderFrontStandardAboutPanel(const AboutPanelOptions& options) override;

  // Returns the commands for menus; they must not be called after the application is destroyed.
  ApplicationCommands commands();

 private:
  // Forwards a capture request to the running instance, if there is one. Returns the exit status,
  // or -1 to continue the launch (the values of GApplication::handle-local-options).
  int handOver();
  void startUp();
  void quitOnSignals();
  void hide();
  void activate();
  void shutDown();
  void activeWindowChanged();
  void updateActivity();

  Glib::RefPtr<Gtk::Application> application_;
  std::optional<MenuBar> menuBar_;
  AboutDialog aboutDialog_;
  // Shown again with the main window.
  HiddenWindows hiddenWindows_;
  ApplicationDelegate* delegate_ = nullptr;
  LinuxMainWindow* window_ = nullptr;
  Gtk::Window* panel_ = nullptr;
  LaunchPurpose purpose_ = LaunchPurpose::application;
  // GLib's sources for the signals.
  std::vector<guint> signalSources_;
  bool launched_ = false;
  bool active_ = false;
};

}  // namespace navora
