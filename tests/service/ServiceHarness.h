#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "service/Service.h"
#include "service/support/Json.h"
#include "tests/support/Files.h"
#include "tests/support/HttpClient.h"
#include "tests/support/Tcp.h"

namespace navora::service::tests {

// The options of a service without sample data, whose jobs take no time.
ServiceOptions plainOptions(std::vector<std::string> more = {});

// A client that can sign in as a user of the service.
class SessionClient : public HttpClient {
 public:
  using HttpClient::HttpClient;

  // Signs in through the login form; fails the test if the service refuses.
  void signIn(const std::string& name = "demo", const std::string& password = "demo");
};

// Starts the service anew for each test, and gives it a client.
class ServiceTest : public testing::Test {
 protected:
  // `arguments` are command-line options beside those of `plainOptions`.
  void start(std::vector<std::string> arguments = {});

  // Waits until the job is done and returns its last state.
  Json finishedJob(const std::string& statusUrl);

  std::unique_ptr<Service> service;
  std::unique_ptr<SessionClient> client;
};

}  // namespace navora::service::tests
