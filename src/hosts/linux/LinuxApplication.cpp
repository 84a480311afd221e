#include "hosts/linux/LinuxApplication.h"

#include <algorithm>
#include <csignal>

#include <glib-unix.h>
#include <glibmm/main.h>
#include <gtkmm/window.h>

#include "hosts/linux/LinuxMainWindow.h"

namespace navora {
namespace {

constexpr const char* applicationId = "example.navora.Navora";

// The session manager and the terminal end programs with signals; they end like by the user's wish.
void quitOnSignals(Gtk::Application& application) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    g_unix_signal_add(
        signal,
        [](gpointer target) -> gboolean {
          static_cast<Gtk::Application*>(target)->quit();
          return G_SOURCE_CONTINUE;
        },
        &application);
  }
}

bool hasActiveWindow() {
  const auto windows = Gtk::Window::list_toplevels();
  return std::ranges::any_of(windows,
                             [](const Gtk::Window* window) { return window->is_active(); });
}

}  // namespace

LinuxApplication::LinuxApplication() : application_(Gtk::Application::create(applicationId)) {
  application_->signal_startup().connect([this] { startUp(); });
  application_->signal_activate().connect([this] { activate(); });
  application_->signal_shutdown().connect([this] { shutDown(); });
}

LinuxApplication::~LinuxApplication() = default;

int LinuxApplication::run(ApplicationDelegate& delegate) {
  delegate_ = &delegate;
  return application_->run();
}

void LinuxApplication::startUp() {
  quitOnSignals(*application_.get());
  if (!delegate_->applicationShouldTerminateAfterLastWindowClosed()) application_->hold();
  delegate_->applicationDidFinishLaunching();
}

void LinuxApplication::activate() {
  // The first activation belongs to the launch, which has shown the window already.
  if (!launched_) {
    launched_ = true;
    return;
  }
  delegate_->applicationShouldHandleReopen(window_ != nullptr && window_->isVisible());
}

void LinuxApplication::shutDown() {
  delegate_->applicationWillTerminate();
}

void LinuxApplication::watch(LinuxMainWindow& window) {
  window_ = &window;
  window.native().property_is_active().signal_changed().connect([this] { activeWindowChanged(); });
}

void LinuxApplication::activeWindowChanged() {
  if (window_->native().is_active()) {
    settleActivity();
  } else {
    // A dialog of ours that takes over becomes active a moment later.
    Glib::signal_idle().connect_once([this] { settleActivity(); });
  }
}

void LinuxApplication::watchPanel(Gtk::Window& panel) {
  panel_ = &panel;
  panel.property_is_active().signal_changed().connect(
      [this] { Glib::signal_idle().connect_once([this] { settleActivity(); }); });
}

void LinuxApplication::settleActivity() {
  if (panel_ != nullptr && panel_->is_active()) return;
  const bool wasActive = active_;
  active_ = hasActiveWindow();
  if (active_ && !wasActive) delegate_->applicationDidBecomeActive();
}

void LinuxApplication::activateIgnoringOtherApplications() {
  if (window_ != nullptr) window_->forceToFront();
}

}  // namespace navora
