#include "ServiceHarness.h"

#include <chrono>
#include <thread>
#include <variant>

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

void SessionClient::signIn(const std::string& name, const std::string& password) {
  const HttpReply reply = request("POST", "/login", "name=" + name + "&password=" + password,
                                  {{"Content-Type", "application/x-www-form-urlencoded"}});
  EXPECT_EQ(reply.status, 303);
  EXPECT_FALSE(cookie.empty());
}

void ServiceTest::start(std::vector<std::string> arguments) {
  service = std::make_unique<Service>(plainOptions(std::move(arguments)));
  const auto problem = service->start();
  ASSERT_FALSE(problem) << *problem;
  client = std::make_unique<SessionClient>(service->port());
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
