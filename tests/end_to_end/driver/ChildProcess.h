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

// The variables of this process that every child needs (search path, sanitizer settings), and no
// others: what the person at this machine has set must not change a test.
Environment baseEnvironment();

// One program that lives at most as long as this object and as the thread that started it, in a
// process group of its own, so that what it started in turn ends with it.
class ChildProcess {
 public:
  struct Options {
    std::vector<std::string> arguments;    // the program first; looked up in PATH without a slash
    Environment environment;               // complete: nothing is inherited
    std::filesystem::path standardOutput;  // appended to; empty means /dev/null
    std::filesystem::path standardError;
    std::filesystem::path workingDirectory = "/";
    int deathSignal = SIGKILL;  // sent by the kernel when the starter dies
  };

  struct ExitStatus {
    int code = -1;  // meaningful when signal is 0
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

  // To the program alone, so that it can end its own children in its own way.
  void signal(int number);
  // SIGTERM, and SIGKILL to the whole group when the program has not ended in time.
  ExitStatus terminate(std::chrono::milliseconds timeout = std::chrono::seconds(5));
  ExitStatus kill();
  ExitStatus wait(std::chrono::milliseconds timeout = defaultTimeout());

  // What this run has written so far.
  std::string outputText() const;
  std::string errorText() const;
  // Waits for a complete line of standard output that starts with `prefix` and gives what follows.
  // The next wait begins behind that line.
  std::string waitForLine(const std::string& prefix,
                          std::chrono::milliseconds timeout = defaultTimeout());

 private:
  Options options_;
  std::uintmax_t outputStart_ = 0;
  std::uintmax_t errorStart_ = 0;
  std::size_t passedOutput_ = 0;  // up to the end of the line found last
  pid_t pid_ = -1;
  std::optional<ExitStatus> exitStatus_;
};

}  // namespace navora::driver
