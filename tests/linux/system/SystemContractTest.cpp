#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "contracts/SystemContract.h"
#include "end_to_end/driver/FakeLogind.h"
#include "fakes/FakeSystem.h"
#include "hosts/linux/bus/LoginManager.h"
#include "hosts/linux/system/LinuxSystem.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// Tests the contract of System with the fake and the Linux implementation.
class FakeMachine {
 public:
  System& system() { return system_; }
  void changeTimeZone(const std::string& identifier) { system_.changeTimeZone(identifier); }
  void wake() { system_.wake(); }

 private:
  EventLog log_;
  FakeSystem system_{log_};
};

class LinuxMachine {
 public:
  LinuxMachine() { changeTimeZone("Europe/Moscow"); }

  System& system() { return system_; }
  void changeTimeZone(const std::string& identifier) {
    const auto fresh = folder_.path() / "fresh";
    std::filesystem::create_symlink("/usr/share/zoneinfo/" + identifier, fresh);
    std::filesystem::rename(fresh, folder_.path() / "localtime");
  }
  void wake() { loginManager_.announceWake(); }

 private:
  const EnvironmentVariable unset_{"TZ", std::nullopt};
  const TemporaryDirectory folder_{"navora-system"};
  driver::FakeLogind loginManager_{TestDesktop::systemBusAddress()};
  LinuxSystem system_{observeResume, SystemTimeZone(folder_.path())};
};

using Machines = testing::Types<FakeMachine, LinuxMachine>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SystemContractTest, Machines);

// Not part of the shared contract: macOS encodes names since version 14 only.
template <typename Machine>
class HostNameContractTest : public SystemContractTest<Machine> {};

TYPED_TEST_SUITE(HostNameContractTest, Machines);

TYPED_TEST(HostNameContractTest, EncodesHostNames) {
  const auto ascii = [this](const std::string& host) { return this->system().asciiHostName(host); };
  EXPECT_EQ(ascii("navora.example"), "navora.example");
  EXPECT_EQ(ascii("bücher.example"), "xn--bcher-kva.example");
  EXPECT_EQ(ascii("BÜCHER.example"), "xn--bcher-kva.example");
  EXPECT_EQ(ascii("пример.example"), "xn--e1afmkfd.example");
  EXPECT_EQ(ascii("straße.example"), "xn--strae-oqa.example");
  EXPECT_EQ(ascii(std::string(64, 'a') + "ü.example"), std::nullopt);
}

}  // namespace
}  // namespace navora
