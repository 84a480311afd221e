#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

std::string mistake(const std::vector<std::string>& arguments) {
  const auto parsed = ServiceOptions::parse(arguments);
  const auto* found = std::get_if<ServiceOptions::Mistake>(&parsed);
  return found == nullptr ? "" : found->message;
}

ServiceOptions options(const std::vector<std::string>& arguments) {
  return std::get<ServiceOptions>(ServiceOptions::parse(arguments));
}

TEST(Options, DefaultsAreADemoAccountInMemoryOnLoopback) {
  const ServiceOptions defaults = options({});
  EXPECT_EQ(defaults.host, "127.0.0.1");
  EXPECT_EQ(defaults.port, 0);
  EXPECT_EQ(defaults.database, ":memory:");
  EXPECT_EQ(defaults.accounts.at("demo"), "demo");
  EXPECT_FALSE(defaults.test);
}

TEST(Options, OwnAccountsReplaceTheDemoAccount) {
  const auto accounts = options({"--account", "a:b:c"}).accounts;
  ASSERT_EQ(accounts.size(), 1U);
  EXPECT_EQ(accounts.at("a"), "b:c");
}

TEST(Options, OnlyLoopbackHostsAreTaken) {
  EXPECT_EQ(options({"--host", "localhost"}).host, "127.0.0.1");
  EXPECT_EQ(options({"--host", "::1"}).host, "::1");
  for (const char* host : {"0.0.0.0", "::", "192.168.0.1", "example.org", ""}) {
    EXPECT_NE(mistake({"--host", host}), "") << host;
  }
}

TEST(Options, MistakesAreNamed) {
  EXPECT_EQ(mistake({"--colour"}), "unknown option --colour");
  EXPECT_EQ(mistake({"--port"}), "--port needs a value");
  for (const char* port : {"65536", "-1", "80a", "", " 80"}) {
    EXPECT_EQ(mistake({"--port", port}), "--port must be a number from 0 to 65535") << port;
  }
  EXPECT_EQ(mistake({"--pages", "/nowhere/at/all"}), "--pages must be a directory");
  EXPECT_EQ(mistake({"--updates", "/nowhere/at/all"}), "--updates must be a directory");
  EXPECT_EQ(mistake({"--account", "name"}), "--account must be NAME:PASSWORD");
  EXPECT_EQ(mistake({"--test-driver"}), "--test-driver and --test-pages need --test");
}

}  // namespace
}  // namespace navora::service::tests
