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

// The development service, with its test controls on, behind a cable that can be pulled.
class ServiceProcess {
 public:
  struct Options {
    std::filesystem::path testPages = {};     // none when empty
    std::filesystem::path logs = {};          // a folder of its own when empty
    std::vector<std::string> arguments = {};  // more of the service's own
  };

  ServiceProcess();
  explicit ServiceProcess(Options options);

  // "http://127.0.0.1:PORT/": the address for the application, which can be cut off.
  std::string url() const { return url("/"); }
  // The address of a path, which begins with "/".
  std::string url(std::string_view path) const;
  // The address for the driver's own controls, which always answers while the service runs.
  const std::string& controlUrl() const { return controlUrl_; }

  // As if the network cable were pulled: connections end, new ones are refused. What the service
  // remembers stays, its log of requests included.
  void stop() { relay_->unplug(); }
  void start() { relay_->plugIn(); }
  bool reachable() const { return relay_->pluggedIn(); }
  bool running() const { return process_->running(); }
  // Connections are accepted but nothing answers, not even the controls, until `resume`.
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
