#include "hosts/linux/application/LinuxApplication.h"

#include <csignal>
#include <cstdlib>

#include <glib-unix.h>
#include <glibmm/main.h>
#include <gtkmm/window.h>

#include "hosts/linux/system/ApplicationId.h"
#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "hosts/linux/workspace/ActiveWindow.h"

namespace navora {
namespace {

// The action that `navora --capture` activates in the running instance.
constexpr const char* captureAction = "capture";
constexpr int continueLaunch = -1;

// Registers the application, trying again while the name's owner does not reply: an instance that
// is quitting still owns the name for a moment. A quick restart, such as that of an update, would
// otherwise leave no instance running.
void registerOnBus(GApplication* application) {
  constexpr int attempts = 100;
  constexpr gulong pause = 20'000;  // microseconds
  for (int attempt = 0; attempt < attempts; ++attempt) {
    GErrorPtr error;
    if (g_application_register(application, nullptr, error.out()) != FALSE) return;
    if (!error.matches(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY)) return;
    g_usleep(pause);
  }
}

}  // namespace

LinuxApplication::LinuxApplication() : application_(Gtk::Application::create(applicationId)) {
  application_->signal_startup().connect([this] { startUp(); });
  application_->signal_activate().connect([this] { activate(); });
  application_->add_action(captureAction,
                           [this] { delegate_->applicationDidReceiveCaptureRequest(); });
  application_->signal_handle_local_options().connect(
      [this](const Glib::RefPtr<Glib::VariantDict>&) { return handOver(); }, false);
  application_->signal_shutdown().connect([this] { shutDown(); });
}

LinuxApplication::~LinuxApplication() {
  for (const guint source : signalSources_)
    g_source_remove(source);
}

int LinuxApplication::run(ApplicationDelegate& delegate, LaunchPurpose purpose) {
  delegate_ = &delegate;
  purpose_ = purpose;
  return application_->run();
}

int LinuxApplication::handOver() {
  GApplication* application = G_APPLICATION(application_->gobj());
  registerOnBus(application);
  if (purpose_ != LaunchPurpose::capture) return continueLaunch;
  // GApplication registers again as the launch continues, and reports the failure.
  if (g_application_get_is_registered(application) == FALSE) return continueLaunch;
  if (g_application_get_is_remote(application) == FALSE) return continueLaunch;
  g_action_group_activate_action(G_ACTION_GROUP(application), captureAction, nullptr);
  return EXIT_SUCCESS;
}

void LinuxApplication::startUp() {
  quitOnSignals();
  if (!delegate_->applicationShouldTerminateAfterLastWindowClosed()) application_->hold();
  delegate_->applicationDidFinishLaunching();
}

// Treats SIGTERM, SIGINT and SIGHUP as Quit.
void LinuxApplication::quitOnSignals() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    signalSources_.push_back(g_unix_signal_add(
        signal,
        [](gpointer self) -> gboolean {
          static_cast<LinuxApplication*>(self)->application_->quit();
          return G_SOURCE_CONTINUE;
        },
        this));
  }
}

void LinuxApplication::activate() {
  // The first activation is the launch itself, which shows the window.
  if (!launched_) {
    launched_ = true;
    if (purpose_ == LaunchPurpose::capture) delegate_->applicationDidReceiveCaptureRequest();
    return;
  }
  delegate_->applicationShouldHandleReopen(window_ != nullptr && window_->isVisible());
}

void LinuxApplication::shutDown() {
  delegate_->applicationWillTerminate();
}

void LinuxApplication::watch(LinuxMainWindow& window) {
  window_ = &window;
  if (menuBar_) {
    window.setMenuBar(menuBar_->widget());
    menuBar_->addMainWindow(window.native());
  }
  window.native().signal_show().connect([this] { hiddenWindows_.showAgain(); });
  window.native().property_is_active().signal_changed().connect([this] { activeWindowChanged(); });
}

void LinuxApplication::activeWindowChanged() {
  if (window_->native().is_active()) {
    updateActivity();
  } else {
    // When the focus moves to one of the application's dialogs, that becomes active only later.
    Glib::signal_idle().connect_once([this] { updateActivity(); });
  }
}

void LinuxApplication::watchPanel(Gtk::Window& panel) {
  panel_ = &panel;
  if (menuBar_) menuBar_->addPanel(panel);
  panel.property_is_active().signal_changed().connect(
      [this] { Glib::signal_idle().connect_once([this] { updateActivity(); }); });
}

void LinuxApplication::updateActivity() {
  if (panel_ != nullptr && panel_->is_active()) return;
  const bool wasActive = active_;
  active_ = isApplicationActive();
  if (active_ && !wasActive) delegate_->applicationDidBecomeActive();
}

void LinuxApplication::setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) {
  if (!menuBar_) menuBar_.emplace(commands());
  menuBar_->setMenus(menus, delegate);
}

void LinuxApplication::orderFrontStandardAboutPanel(const AboutPanelOptions& options) {
  aboutDialog_.show(window_ != nullptr && window_->isVisible() ? &window_->native() : nullptr,
                    options);
}

ApplicationCommands LinuxApplication::commands() {
  return {.hide = [this] { hide(); }, .terminate = [this] { application_->quit(); }};
}

void LinuxApplication::hide() {
  // The panel handles a close request as Escape, which keeps the text.
  if (panel_ != nullptr && panel_->get_visible()) panel_->close();
  const auto widgetOf = [](Gtk::Window* window) {
    return window == nullptr ? nullptr : GTK_WIDGET(window->gobj());
  };
  hiddenWindows_.hideAllBut(
      {widgetOf(panel_), widgetOf(window_ == nullptr ? nullptr : &window_->native())});
  if (window_ != nullptr) window_->orderOut();
}

void LinuxApplication::activateIgnoringOtherApplications() {
  if (window_ != nullptr) window_->forceToFront();
}

}  // namespace navora
