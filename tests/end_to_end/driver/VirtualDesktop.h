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

// A whole desktop of its own, shut off from the one of the person at this machine: an X display, a
// session bus and a system bus on which only what a test puts there exists, a window manager, an
// empty home, and a stand-in that opens web addresses. Every program of a test runs inside.
class VirtualDesktop {
 public:
  struct Options {
    int width = 1600;
    int height = 1000;
    std::string language = "en";  // preferred languages as in LANGUAGE: "de:en"
    bool dark = false;            // the desktop's theme
    bool accessibility = true;    // widgets can be found; costs programs some start-up time
    bool windowManager = true;
    Environment environment;  // added to, or in place of, the desktop's own variables
    std::vector<std::string> serverArguments = {};  // more arguments of Xvfb
  };

  VirtualDesktop();
  explicit VirtualDesktop(Options options);
  ~VirtualDesktop();

  // For the programs that run on this desktop: complete.
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

  // Starts a program on this desktop; its output goes to NAME.out and NAME.err among the logs.
  std::unique_ptr<ChildProcess> start(std::vector<std::string> arguments,
                                      const Environment& additional = {});

  // Removes what a program has stored under its own name in the home, data, configuration and cache
  // folders, as if it had never run here.
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
