#include "end_to_end/driver/ServiceProcess.h"

#include "end_to_end/driver/Executables.h"

namespace navora::driver {

ServiceProcess::ServiceProcess() : ServiceProcess(Options{}) {}

ServiceProcess::ServiceProcess(Options options)
    : options_(std::move(options)), folder_("navora-service") {
  if (options_.logs.empty()) options_.logs = folder_.path();
  ChildProcess::Options process;
  process.arguments = {serviceExecutable(), "--port", "0", "--test", "--test-driver"};
  if (!options_.testPages.empty()) {
    process.arguments.insert(process.arguments.end(), {"--test-pages", options_.testPages});
  }
  process.arguments.insert(process.arguments.end(), options_.arguments.begin(),
                           options_.arguments.end());
  process.environment = baseEnvironment();
  process.standardOutput = options_.logs / "navora-service.out";
  process.standardError = options_.logs / "navora-service.err";
  process_ = std::make_unique<ChildProcess>(std::move(process));
  controlUrl_ = process_->waitForLine("navora-service listening on ");
  relay_ = std::make_unique<Relay>(std::stoi(controlUrl_.substr(controlUrl_.rfind(':') + 1)));
}

std::string ServiceProcess::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(relay_->port()) + std::string(path);
}

}  // namespace navora::driver
