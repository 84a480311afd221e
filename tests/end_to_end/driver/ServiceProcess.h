#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "end_to_end/driver/ChildProcess.h"
#include "end_to_end/driver/Relay.h"
#include "tests/support/Files.h"

namespace navora::driver {

// The development service with test controls, behind a relay that can be unplugged.
class ServiceProcess {
 public:
  struct Options {
    std::filesystem::path testPages = {};     // empty for none
    std::filesystem::path logs = {};          // empty for a temporary folder
    std::vector<std::string> arguments = {};  // more options of the service
  };

  ServiceProcess();
  explicit ServiceProcess(Options options);

  // Returns "http://127.0.0.1:PORT/", the address for the application, through the relay.
  std::string url() const { return url("/"); }
  // Returns the address of a path, which begins with "/".
  std::string url(std::string_view path) const;
  // Returns the address for the driver, which bypasses the relay.
  const std::string& controlUrl() const { return controlUrl_; }

  // Unplugs the relay: connections are closed and new ones refused. The service keeps running.
  void stop() { relay_->unplug(); }
  void start() { relay_->plugIn(); }
  bool reachable() const { return relay_->pluggedIn(); }
  bool running() const { return process_->running(); }
  // Stops the process: until resume(), connections are accepted but not answered, not even those to
  // the test controls.
  void pause() { process_->signal(SIGSTOP); }
  void resume() { process_->signal(SIGCONT); }

 private:
  Options options_;
  TemporaryDirectory folder_;
  std::unique_ptr<ChildProcess> process_;
  std::string controlUrl_;
  std::unique_ptr<Relay> relay_;
};

}  // namespace navora::driver
