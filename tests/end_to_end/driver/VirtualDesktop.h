#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "end_to_end/driver/Accessibility.h"
#include "end_to_end/driver/ChildProcess.h"
#include "end_to_end/driver/Display.h"
#include "end_to_end/driver/Keyboard.h"
#include "end_to_end/driver/Mouse.h"
#include "end_to_end/driver/OpenedUrls.h"
#include "tests/support/Files.h"

namespace navora::driver {

// A desktop isolated from the developer's: an X display, an empty session bus and system bus, a
// window manager, an empty home, and a handler that records opened URLs. All programs of a test run
// on it.
class VirtualDesktop {
 public:
  struct Options {
    int width = 1600;
    int height = 1000;
    std::string language = "en";  // preferred languages, in the format of LANGUAGE: "de:en"
    bool dark = false;            // the desktop's theme
    bool accessibility = true;    // widgets can be found; programs start a little later
    bool windowManager = true;
    Environment environment;  // added to the desktop's own variables, or replaces them
    std::vector<std::string> serverArguments = {};  // more arguments of Xvfb
  };

  VirtualDesktop();
  explicit VirtualDesktop(Options options);
  ~VirtualDesktop();

  // The complete environment of programs on this desktop.
  const Environment& environment() const { return environment_; }
  const std::string& sessionBusAddress() const { return sessionBusAddress_; }
  const std::string& systemBusAddress() const { return systemBusAddress_; }

  const std::filesystem::path& root() const { return folder_.path(); }
  std::filesystem::path home() const { return root() / "home"; }
  std::filesystem::path dataHome() const { return root() / "data"; }
  std::filesystem::path configHome() const { return root() / "config"; }
  std::filesystem::path cacheHome() const { return root() / "cache"; }
  std::filesystem::path logs() const { return root() / "logs"; }

  Display& display() { return *display_; }
  Keyboard& keyboard() { return *keyboard_; }
  Mouse& mouse() { return *mouse_; }
  OpenedUrls& openedUrls() { return *openedUrls_; }
  Accessibility& accessibility();

  // Starts a program on this desktop; its output is appended to NAME.out and NAME.err in logs().
  std::unique_ptr<ChildProcess> start(std::vector<std::string> arguments,
                                      const Environment& additional = {});

  // Deletes what a program has stored under its name in the home, data, configuration, cache and
  // state folders.
  void forget(const std::string& program);

 private:
  void createFolders();
  void startServers();
  void startWindowManager();
  std::unique_ptr<ChildProcess> startBus(const std::string& kind);

  Options options_;
  TemporaryDirectory folder_;
  Environment environment_;
  std::string sessionBusAddress_;
  std::string systemBusAddress_;
  std::unique_ptr<OpenedUrls> openedUrls_;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> sessionBus_;
  std::unique_ptr<ChildProcess> systemBus_;
  std::unique_ptr<Display> display_;
  std::unique_ptr<Keyboard> keyboard_;
  std::unique_ptr<Mouse> mouse_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<Accessibility> accessibility_;
};

}  // namespace navora::driver
