#pragma once

#include <optional>
#include <vector>

#include <gtkmm/application.h>

#include "hosts/linux/application/AboutDialog.h"
#include "hosts/linux/application/MenuBar.h"
#include "platform/Application.h"

namespace navora {

class LinuxMainWindow;

// The running program on the session bus: one instance; a second launch reaches the first.
class LinuxApplication final : public Application {
 public:
  LinuxApplication();
  ~LinuxApplication() override;

  LinuxApplication(const LinuxApplication&) = delete;
  LinuxApplication& operator=(const LinuxApplication&) = delete;

  // Runs until the application quits; returns the exit status. In a second instance the delegate is
  // never called.
  int run(ApplicationDelegate& delegate, LaunchPurpose purpose = LaunchPurpose::application);

  // From now on follows whether one of the application's windows is the active one.
  void watch(LinuxMainWindow& window);
  // The capture panel takes the keyboard without making the application the active one.
  void watchPanel(Gtk::Window& panel);

  void activateIgnoringOtherApplications() override;
  // The menus appear in the windows that are watched from then on.
  void setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) override;
  void orderFrontStandardAboutPanel(const AboutPanelOptions& options) override;

  // What menus do to the whole application.
  ApplicationCommands commands();

 private:
  // Leaves what this launch is for to the running instance, if that is all; returns the exit status
  // then.
  int handOver();
  void startUp();
  void activate();
  void shutDown();
  void activeWindowChanged();
  void settleActivity();

  Glib::RefPtr<Gtk::Application> application_;
  std::optional<MenuBar> menuBar_;
  AboutDialog aboutPanel_;
  ApplicationDelegate* delegate_ = nullptr;
  LinuxMainWindow* window_ = nullptr;
  Gtk::Window* panel_ = nullptr;
  LaunchPurpose purpose_ = LaunchPurpose::application;
  bool launched_ = false;
  bool active_ = false;
};

}  // namespace navora
