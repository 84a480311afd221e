#include "end_to_end/driver/ApplicationProcess.h"

#include "end_to_end/driver/Executables.h"

namespace navora::driver {

namespace {

constexpr int leastMainWidth = 700;
constexpr int leastMainHeight = 500;

bool isMain(const WindowInfo& window) {
  return window.content.width >= leastMainWidth && window.content.height >= leastMainHeight &&
         !window.overrideRedirect && window.hasType("_NET_WM_WINDOW_TYPE_NORMAL");
}

}  // namespace

ApplicationProcess::ApplicationProcess(VirtualDesktop& desktop, std::string url)
    : ApplicationProcess(desktop, std::move(url), Options{}) {}

ApplicationProcess::ApplicationProcess(VirtualDesktop& desktop, std::string url, Options options)
    : desktop_(desktop), url_(std::move(url)), options_(std::move(options)) {}

std::unique_ptr<ChildProcess> ApplicationProcess::launch(
    const std::vector<std::string>& arguments) {
  std::vector<std::string> command{options_.executable.empty() ? applicationExecutable().string()
                                                               : options_.executable};
  command.insert(command.end(), arguments.begin(), arguments.end());
  Environment environment = options_.environment;
  if (!url_.empty()) environment["NAVORA_URL"] = url_;
  return desktop_.start(std::move(command), environment);
}

void ApplicationProcess::start() {
  // The old process must have left the bus before the new one checks that it is the only instance.
  process_.reset();
  process_ = launch(options_.arguments);
}

void ApplicationProcess::restart() {
  process().terminate();
  start();
}

ApplicationProcess::Outcome ApplicationProcess::run(const std::vector<std::string>& arguments) {
  const auto second = launch(arguments);
  Outcome outcome;
  outcome.status = second->wait();
  outcome.output = second->outputText();
  outcome.errors = second->errorText();
  return outcome;
}

ChildProcess& ApplicationProcess::process() {
  if (!process_) throw TestError("The application has not been started");
  return *process_;
}

std::vector<WindowInfo> ApplicationProcess::windows() {
  const pid_t owner = pid();
  return desktop_.display().windows(
      [owner](const WindowInfo& window) { return window.pid == owner && window.mapped; });
}

std::optional<WindowInfo> ApplicationProcess::mainWindow() {
  for (WindowInfo& window : windows()) {
    if (isMain(window)) return std::move(window);
  }
  return std::nullopt;
}

WindowInfo ApplicationProcess::waitForMainWindow(std::chrono::milliseconds timeout) {
  const auto find = [this] {
    auto window = mainWindow();
    if (!window && !running()) throw TestError("The application has ended\n" + errorText());
    return window;
  };
  return waitFor(find, "the main window is on the screen", timeout,
                 [this] { return desktop_.display().describeWindows() + errorText(); });
}

void ApplicationProcess::waitUntilMainWindowHidden() {
  waitUntil([this] { return !mainWindow(); }, "the main window is hidden", defaultTimeout(),
            [this] { return desktop_.display().describeWindows(); });
}

std::vector<ProcessInfo> ApplicationProcess::webProcesses() {
  std::vector<ProcessInfo> found = descendantsOf(pid());
  std::erase_if(found, [](const ProcessInfo& process) {
    return !process.name.starts_with("WebKitWebProces");
  });
  return found;
}

void ApplicationProcess::killWebProcesses() {
  const auto processes = webProcesses();
  if (processes.empty()) throw TestError("The application runs no page");
  for (const ProcessInfo& process : processes)
    ::kill(process.pid, SIGKILL);
  for (const ProcessInfo& process : processes) {
    waitUntil([&] { return !isAlive(process.pid); }, "a page's process has ended");
  }
}

std::int64_t ApplicationProcess::memoryKiB() {
  std::int64_t sum = proportionalMemoryKiB(pid()).value_or(0);
  for (const ProcessInfo& process : descendantsOf(pid())) {
    sum += proportionalMemoryKiB(process.pid).value_or(0);
  }
  return sum;
}

std::int64_t ApplicationProcess::processorTicks() {
  std::int64_t sum = driver::processorTicks(pid()).value_or(0);
  for (const ProcessInfo& process : descendantsOf(pid())) {
    sum += driver::processorTicks(process.pid).value_or(0);
  }
  return sum;
}

}  // namespace navora::driver
