#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HttpClient.h"
#include "service/Service.h"

namespace navora::service::tests {

/// The options of a service without sample data, whose jobs take no time.
ServiceOptions plainOptions(std::vector<std::string> more = {});

/// A directory that is removed with its owner.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }
  void write(const std::string& name, const std::string& content) const;

 private:
  std::filesystem::path path_;
};

/// Starts the service anew for each test, and gives it a client.
class ServiceTest : public testing::Test {
 protected:
  /// `arguments` are command-line options beside those of `plainOptions`.
  void start(std::vector<std::string> arguments = {});

  /// Waits until the job is done and returns its last state.
  Json finishedJob(const std::string& statusUrl);

  std::unique_ptr<Service> service;
  std::unique_ptr<HttpClient> client;
};

}  // namespace navora::service::tests
