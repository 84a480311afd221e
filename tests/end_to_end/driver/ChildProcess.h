#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <signal.h>
#include <sys/types.h>

#include "tests/support/Wait.h"

namespace navora::driver {

using Environment = std::map<std::string, std::string>;

// Returns the variables of this process that every child needs (search path, sanitizer settings),
// and no others, so that the developer's environment does not affect tests.
Environment baseEnvironment();

// A program in a process group of its own. The group is killed when this object is destroyed; only
// the program itself gets a signal when the thread that created this object exits.
class ChildProcess {
 public:
  struct Options {
    std::vector<std::string> arguments;    // the program first; searched in PATH without a slash
    Environment environment;               // complete; nothing is inherited
    std::filesystem::path standardOutput;  // appended to; empty for /dev/null
    std::filesystem::path standardError;
    std::filesystem::path workingDirectory = "/";
    int deathSignal = SIGKILL;  // sent by the kernel when the creating thread exits
  };

  struct ExitStatus {
    int code = -1;  // valid if signal is 0
    int signal = 0;
    bool operator==(const ExitStatus&) const = default;
  };

  explicit ChildProcess(Options options);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  const std::string& name() const { return options_.arguments.front(); }
  bool running() { return !exitStatus(); }
  std::optional<ExitStatus> exitStatus();

  // Sends a signal to the program alone, so that it can terminate its children itself.
  void signal(int number);
  // Sends SIGTERM, and SIGKILL to the whole group if the program does not exit in time.
  ExitStatus terminate(std::chrono::milliseconds timeout = std::chrono::seconds(5));
  ExitStatus kill();
  ExitStatus wait(std::chrono::milliseconds timeout = defaultTimeout());

  // Return what this run has written so far.
  std::string outputText() const;
  std::string errorText() const;
  // Waits for a complete line of standard output that starts with `prefix` and returns the rest of
  // it. The next wait begins after that line.
  std::string waitForLine(const std::string& prefix,
                          std::chrono::milliseconds timeout = defaultTimeout());

 private:
  Options options_;
  std::uintmax_t outputStart_ = 0;
  std::uintmax_t errorStart_ = 0;
  std::size_t passedOutput_ = 0;  // up to the end of the last line found
  pid_t pid_ = -1;
  std::optional<ExitStatus> exitStatus_;
};

}  // namespace navora::driver
