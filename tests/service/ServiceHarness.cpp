#include "ServiceHarness.h"

#include <chrono>
#include <fstream>
#include <thread>
#include <variant>

#include <stdlib.h>

namespace navora::service::tests {

ServiceOptions plainOptions(std::vector<std::string> more) {
  std::vector<std::string> arguments{"--no-samples", "--job-delay", "0"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const auto parsed = ServiceOptions::parse(arguments);
  if (const auto* mistake = std::get_if<ServiceOptions::Mistake>(&parsed)) {
    ADD_FAILURE() << mistake->message;
  }
  return std::get<ServiceOptions>(parsed);
}

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = std::filesystem::temp_directory_path() / "navora-service-XXXXXX";
  EXPECT_NE(::mkdtemp(pattern.data()), nullptr);
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

void TemporaryDirectory::write(const std::string& name, const std::string& content) const {
  std::ofstream(path_ / name, std::ios::binary) << content;
}

void ServiceTest::start(std::vector<std::string> arguments) {
  service = std::make_unique<Service>(plainOptions(std::move(arguments)));
  const auto problem = service->start();
  ASSERT_FALSE(problem) << *problem;
  client = std::make_unique<HttpClient>(service->port());
}

Json ServiceTest::finishedJob(const std::string& statusUrl) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  Json job;
  do {
    job = client->get(statusUrl).json();
    if (job.value("state", "") == "done") return job;
    std::this_thread::yield();
  } while (std::chrono::steady_clock::now() < end);
  ADD_FAILURE() << "the job is not done: " << job;
  return job;
}

}  // namespace navora::service::tests
