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

// The application under test on a virtual desktop. Starts when start() is called.
class ApplicationProcess {
 public:
  struct Options {
    std::vector<std::string> arguments = {};
    Environment environment = {};  // added to the desktop's own and NAVORA_URL
    std::string executable = {};   // empty for the one of this build
  };

  // The result of a run that has exited.
  struct Outcome {
    ChildProcess::ExitStatus status;
    std::string output;
    std::string errors;
  };

  // Leaves NAVORA_URL unset if `url` is empty.
  ApplicationProcess(VirtualDesktop& desktop, std::string url);
  ApplicationProcess(VirtualDesktop& desktop, std::string url, Options options);

  void start();
  // Terminates the running process by a signal and starts another. Stored data are kept.
  void restart();
  // Runs another instance of the program until it exits: a second launch, or --self-test.
  Outcome run(const std::vector<std::string>& arguments);

  ChildProcess& process();
  pid_t pid() { return process().pid(); }
  bool started() const { return process_ != nullptr; }
  bool running() { return process_ && process_->running(); }
  std::string errorText() const { return process_ ? process_->errorText() : std::string(); }

  // Returns the visible windows of the application, bottom to top.
  std::vector<WindowInfo> windows();
  // Returns the main window. It is identified by its size, as panels and dialogs are smaller than
  // its minimum.
  std::optional<WindowInfo> mainWindow();
  WindowInfo waitForMainWindow(std::chrono::milliseconds timeout = defaultTimeout());
  void waitUntilMainWindowHidden();

  // Returns the processes that run pages.
  std::vector<ProcessInfo> webProcesses();
  void killWebProcesses();
  // These count the application and all its descendants.
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
