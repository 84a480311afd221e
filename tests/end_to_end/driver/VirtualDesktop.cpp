#include "end_to_end/driver/VirtualDesktop.h"

#include <unistd.h>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/DesktopFiles.h"

namespace navora::driver {

namespace {

// A colour of no window, so that a window that draws nothing can be told from no window.
constexpr std::uint32_t backgroundColor = 0x4F7F6F;

void paintBackground(XConnection& connection) {
  xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_BACK_PIXEL,
                               &backgroundColor);
  xcb_clear_area(connection.get(), 0, connection.root(), 0, 0, 0, 0);
  connection.synchronize();
}

// Passes the environment to the session bus, which starts services but was started before the
// display.
void tellBus(const std::string& address, const Environment& environment) {
  BusConnection bus(address);
  GVariantBuilder variables;
  g_variant_builder_init(&variables, G_VARIANT_TYPE("a{ss}"));
  for (const auto& [name, value] : environment) {
    g_variant_builder_add(&variables, "{ss}", name.c_str(), value.c_str());
  }
  bus.call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "UpdateActivationEnvironment"},
           g_variant_new("(a{ss})", &variables));
}

// Returns whether the window manager handles requests. It sets its EWMH properties earlier, and a
// window mapped before it listens is never shown. This request needs no visible window.
bool windowManagerAnswers(XConnection& connection) {
  const xcb_window_t window = xcb_generate_id(connection.get());
  xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  connection.sendToWindowManager(window, "_NET_REQUEST_FRAME_EXTENTS", {});
  const bool answered =
      becomesTrue([&] { return connection.hasProperty(window, "_NET_FRAME_EXTENTS"); },
                  std::chrono::milliseconds(100));
  xcb_destroy_window(connection.get(), window);
  connection.synchronize();
  return answered;
}

}  // namespace

VirtualDesktop::VirtualDesktop() : VirtualDesktop(Options{}) {}

VirtualDesktop::VirtualDesktop(Options options)
    : options_(std::move(options)), folder_("navora-desktop") {
  createFolders();
  openedUrls_ = std::make_unique<OpenedUrls>(dataHome(), configHome(), root() / "opened-urls");
  startServers();
  if (options_.windowManager) startWindowManager();
}

VirtualDesktop::~VirtualDesktop() {
  // Terminate the display's clients before the display, so that none of them fails.
  accessibility_.reset();
  windowManager_.reset();
  sessionBus_.reset();
  systemBus_.reset();
}

void VirtualDesktop::createFolders() {
  for (const char* name : {"home", "data", "config", "cache", "state", "runtime", "logs", "empty",
                           "session-services", "system-services"}) {
    std::filesystem::create_directories(root() / name);
  }
  std::filesystem::permissions(root() / "runtime", std::filesystem::perms::owner_all);
  writeFile(configHome() / "gtk-3.0/settings.ini", toolkitSettings(options_.dark));
  writeFile(root() / "openbox.xml", windowManagerConfiguration());
  if (options_.accessibility) {
    writeFile(root() / "session-services/org.a11y.Bus.service",
              readFile("/usr/share/dbus-1/services/org.a11y.Bus.service"));
  }

  environment_ = baseEnvironment();
  environment_["HOME"] = home();
  environment_["XDG_DATA_HOME"] = dataHome();
  environment_["XDG_CONFIG_HOME"] = configHome();
  environment_["XDG_CACHE_HOME"] = cacheHome();
  environment_["XDG_STATE_HOME"] = root() / "state";
  environment_["XDG_RUNTIME_DIR"] = root() / "runtime";
  environment_["XDG_DATA_DIRS"] = "/usr/local/share:/usr/share";
  environment_["XDG_CONFIG_DIRS"] = root() / "empty";
  environment_["XDG_SESSION_TYPE"] = "x11";
  environment_["XDG_CURRENT_DESKTOP"] = "X-Virtual";
  environment_["GDK_BACKEND"] = "x11";
  environment_["GSETTINGS_BACKEND"] = "memory";
  environment_["GIO_USE_VFS"] = "local";
  environment_["GIO_USE_VOLUME_MONITOR"] = "unix";
  environment_["LANG"] = "C.UTF-8";
  environment_["LANGUAGE"] = options_.language;
  if (!options_.accessibility) environment_["NO_AT_BRIDGE"] = "1";
  for (const auto& [name, value] : options_.environment)
    environment_[name] = value;
}

std::unique_ptr<ChildProcess> VirtualDesktop::startBus(const std::string& kind) {
  const std::filesystem::path configuration = root() / (kind + "-bus.conf");
  writeFile(configuration,
            busConfiguration(root() / "runtime" / kind, root() / (kind + "-services")));
  ChildProcess::Options options;
  options.arguments = {"dbus-daemon", "--config-file=" + configuration.string(), "--nofork",
                       "--nopidfile", "--print-address=1"};
  options.environment = environment_;
  options.standardOutput = logs() / (kind + "-bus.out");
  options.standardError = logs() / (kind + "-bus.err");
  options.deathSignal = SIGTERM;
  return std::make_unique<ChildProcess>(std::move(options));
}

void VirtualDesktop::startServers() {
  ChildProcess::Options server;
  const std::string screen =
      std::to_string(options_.width) + "x" + std::to_string(options_.height) + "x24";
  server.arguments = {"Xvfb", "-displayfd", "1",         "-screen", "0",        screen,
                      "-dpi", "96",         "-nolisten", "tcp",     "-noreset", "-ac"};
  server.arguments.insert(server.arguments.end(), options_.serverArguments.begin(),
                          options_.serverArguments.end());
  server.environment = environment_;
  server.standardOutput = logs() / "display.out";
  server.standardError = logs() / "display.err";
  // Lets the server remove its lock file and socket.
  server.deathSignal = SIGTERM;
  server_ = std::make_unique<ChildProcess>(std::move(server));
  sessionBus_ = startBus("session");
  systemBus_ = startBus("system");

  sessionBusAddress_ = sessionBus_->waitForLine("");
  systemBusAddress_ = systemBus_->waitForLine("");
  environment_["DBUS_SESSION_BUS_ADDRESS"] = sessionBusAddress_;
  environment_["DBUS_SYSTEM_BUS_ADDRESS"] = systemBusAddress_;
  environment_["DISPLAY"] = ":" + server_->waitForLine("");
  display_ = std::make_unique<Display>(environment_["DISPLAY"]);
  keyboard_ = std::make_unique<Keyboard>(display_->connection());
  mouse_ = std::make_unique<Mouse>(display_->connection());
  paintBackground(display_->connection());
  tellBus(sessionBusAddress_, environment_);
}

void VirtualDesktop::startWindowManager() {
  windowManager_ = start({"openbox", "--sm-disable", "--config-file", root() / "openbox.xml"});
  waitUntil([this] { return windowManagerAnswers(display_->connection()); },
            "the window manager is ready", defaultTimeout(),
            [this] { return windowManager_->errorText(); });
}

std::unique_ptr<ChildProcess> VirtualDesktop::start(std::vector<std::string> arguments,
                                                    const Environment& additional) {
  const std::string name = std::filesystem::path(arguments.front()).filename();
  ChildProcess::Options options;
  options.arguments = std::move(arguments);
  options.environment = environment_;
  for (const auto& [variable, value] : additional)
    options.environment[variable] = value;
  options.standardOutput = logs() / (name + ".out");
  options.standardError = logs() / (name + ".err");
  options.workingDirectory = home();
  return std::make_unique<ChildProcess>(std::move(options));
}

Accessibility& VirtualDesktop::accessibility() {
  if (!options_.accessibility) throw TestError("This desktop was started without accessibility");
  if (!accessibility_) accessibility_ = std::make_unique<Accessibility>(sessionBusAddress_);
  return *accessibility_;
}

void VirtualDesktop::forget(const std::string& program) {
  for (const auto& parent : {home(), dataHome(), configHome(), cacheHome(), root() / "state"}) {
    std::filesystem::remove_all(parent / program);
  }
  openedUrls_->clear();
}

}  // namespace navora::driver
