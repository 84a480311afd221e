#pragma once

#include <memory>

#include <gtkmm/application.h>

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
  int run(ApplicationDelegate& delegate);

  // From now on follows whether one of the application's windows is the active one.
  void watch(LinuxMainWindow& window);
  // The capture panel takes the keyboard without making the application the active one.
  void watchPanel(Gtk::Window& panel);

  void activateIgnoringOtherApplications() override;

 private:
  void startUp();
  void activate();
  void shutDown();
  void activeWindowChanged();
  void settleActivity();

  Glib::RefPtr<Gtk::Application> application_;
  ApplicationDelegate* delegate_ = nullptr;
  LinuxMainWindow* window_ = nullptr;
  Gtk::Window* panel_ = nullptr;
  bool launched_ = false;
  bool active_ = false;
};

}  // namespace navora
