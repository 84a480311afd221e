#include "end_to_end/driver/ChildProcess.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Files.h"

namespace navora::driver {

namespace {

std::string resolveProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  const char* search = std::getenv("PATH");
  std::string folders = search ? search : "/usr/local/bin:/usr/bin:/bin";
  for (std::size_t start = 0; start <= folders.size();) {
    std::size_t end = folders.find(':', start);
    if (end == std::string::npos) end = folders.size();
    std::string candidate = folders.substr(start, end - start) + "/" + name;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
    start = end + 1;
  }
  throw TestError("There is no program named " + name);
}

int openOutput(const std::filesystem::path& path) {
  if (path.empty()) return open("/dev/null", O_WRONLY | O_CLOEXEC);
  std::filesystem::create_directories(path.parent_path());
  return open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

std::uintmax_t sizeOf(const std::filesystem::path& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return error ? 0 : size;
}

std::string textFrom(const std::filesystem::path& path, std::uintmax_t start) {
  std::string text = path.empty() ? std::string() : readFile(path);
  return start < text.size() ? text.substr(start) : std::string();
}

// Runs between fork and exec: only async-signal-safe calls.
[[noreturn]] void becomeProgram(pid_t parent, int deathSignal, int output, int error,
                                const char* folder, const char* program, char* const* arguments,
                                char* const* environment) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, deathSignal);
  if (getppid() != parent) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  const int input = open("/dev/null", O_RDONLY);
  if (dup2(input, 0) < 0 || dup2(output, 1) < 0 || dup2(error, 2) < 0) _exit(127);
  // Libraries do not set FD_CLOEXEC on all sockets; a child that inherits one keeps its port busy.
  close_range(3, ~0U, 0);
  if (chdir(folder) != 0) _exit(127);
  execve(program, arguments, environment);
  _exit(127);
}

}  // namespace

Environment baseEnvironment() {
  Environment environment;
  for (const char* name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TMPDIR",
                           "LLVM_PROFILE_FILE", "NAVORA_TEST_TIMEOUT_FACTOR"}) {
    if (const char* value = std::getenv(name)) environment[name] = value;
  }
  return environment;
}

ChildProcess::ChildProcess(Options options) : options_(std::move(options)) {
  const std::string program = resolveProgram(options_.arguments.front());
  std::vector<char*> arguments;
  for (std::string& argument : options_.arguments)
    arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  std::vector<std::string> assignments;
  for (const auto& [name, value] : options_.environment)
    assignments.push_back(name + "=" + value);
  std::vector<char*> environment;
  for (std::string& assignment : assignments)
    environment.push_back(assignment.data());
  environment.push_back(nullptr);

  if (access(program.c_str(), X_OK) != 0) throw TestError("Cannot start " + program);
  const int output = openOutput(options_.standardOutput);
  const int error = openOutput(options_.standardError);
  outputStart_ = sizeOf(options_.standardOutput);
  errorStart_ = sizeOf(options_.standardError);
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) {
    becomeProgram(parent, options_.deathSignal, output, error, options_.workingDirectory.c_str(),
                  program.c_str(), arguments.data(), environment.data());
  }
  close(output);
  close(error);
  if (pid_ < 0) throw TestError("Cannot fork for " + name() + ": " + std::strerror(errno));
  // The child does the same; the second call has no effect.
  setpgid(pid_, pid_);
}

ChildProcess::~ChildProcess() {
  if (running()) {
    signal(SIGTERM);
    becomesTrue([this] { return !running(); }, std::chrono::seconds(3));
  }
  // The program has not been reaped yet, so its process group id is not reused.
  ::kill(-pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

std::optional<ChildProcess::ExitStatus> ChildProcess::exitStatus() {
  if (exitStatus_) return exitStatus_;
  siginfo_t information{};
  const int flags = WEXITED | WNOHANG | WNOWAIT;
  if (waitid(P_PID, static_cast<id_t>(pid_), &information, flags) == 0 &&
      information.si_pid == pid_) {
    exitStatus_ = information.si_code == CLD_EXITED ? ExitStatus{information.si_status, 0}
                                                    : ExitStatus{-1, information.si_status};
  }
  return exitStatus_;
}

void ChildProcess::signal(int number) {
  if (running()) ::kill(pid_, number);
}

ChildProcess::ExitStatus ChildProcess::terminate(std::chrono::milliseconds timeout) {
  signal(SIGTERM);
  if (!becomesTrue([this] { return !running(); }, timeout)) return kill();
  return *exitStatus();
}

ChildProcess::ExitStatus ChildProcess::kill() {
  ::kill(-pid_, SIGKILL);
  return wait();
}

ChildProcess::ExitStatus ChildProcess::wait(std::chrono::milliseconds timeout) {
  waitUntil([this] { return !running(); }, name() + " has ended", timeout);
  return *exitStatus();
}

std::string ChildProcess::outputText() const {
  return textFrom(options_.standardOutput, outputStart_);
}

std::string ChildProcess::errorText() const {
  return textFrom(options_.standardError, errorStart_);
}

std::string ChildProcess::waitForLine(const std::string& prefix,
                                      std::chrono::milliseconds timeout) {
  const auto find = [&]() -> std::optional<std::string> {
    const bool ended = !running();
    const std::string text = outputText();
    for (std::size_t start = passedOutput_; start < text.size();) {
      const std::size_t end = text.find('\n', start);
      if (end == std::string::npos) break;
      if (text.compare(start, prefix.size(), prefix) == 0) {
        passedOutput_ = end + 1;
        return text.substr(start + prefix.size(), end - start - prefix.size());
      }
      start = end + 1;
    }
    if (ended) {
      throw TestError(name() + " ended before it printed a line starting with \"" + prefix +
                      "\"\n" + text + errorText());
    }
    return std::nullopt;
  };
  return waitFor(find, name() + " prints a line starting with \"" + prefix + "\"", timeout,
                 [this] { return outputText() + errorText(); });
}

}  // namespace navora::driver
