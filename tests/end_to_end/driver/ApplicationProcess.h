#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "end_to_end/driver/ChildProcess.h"
#include "end_to_end/driver/Display.h"
#include "end_to_end/driver/ProcessTable.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::driver {

// The application under test on a virtual desktop. It is started by `start`, not before.
class ApplicationProcess {
 public:
  struct Options {
    std::vector<std::string> arguments = {};
    Environment environment = {};  // beside the desktop's own and NAVORA_URL
    std::string executable = {};   // of this build when empty
  };

  // What a run that has come to its end leaves.
  struct Outcome {
    ChildProcess::ExitStatus status;
    std::string output;
    std::string errors;
  };

  // An empty `url` leaves NAVORA_URL unset.
  ApplicationProcess(VirtualDesktop& desktop, std::string url);
  ApplicationProcess(VirtualDesktop& desktop, std::string url, Options options);

  void start();
  // Ends the running one, by signal, and starts another; what it stored stays.
  void restart();
  // Runs the program once more beside this one, to its end: a second launch, or a --self-test.
  Outcome run(const std::vector<std::string>& arguments);

  ChildProcess& process();
  pid_t pid() { return process().pid(); }
  bool started() const { return process_ != nullptr; }
  bool running() { return process_ && process_->running(); }
  std::string errorText() const { return process_ ? process_->errorText() : std::string(); }

  // The windows of the application that are on the screen, bottom to top.
  std::vector<WindowInfo> windows();
  // The main window is known by its size: no panel or dialog comes near its least one.
  std::optional<WindowInfo> mainWindow();
  WindowInfo waitForMainWindow(std::chrono::milliseconds timeout = defaultTimeout());
  void waitUntilMainWindowHidden();

  // The processes that run pages.
  std::vector<ProcessInfo> webProcesses();
  void killWebProcesses();
  // Of the application and everything that it has started.
  std::int64_t memoryKiB();
  std::int64_t processorTicks();

 private:
  std::unique_ptr<ChildProcess> launch(const std::vector<std::string>& arguments);

  VirtualDesktop& desktop_;
  std::string url_;
  Options options_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace navora::driver
