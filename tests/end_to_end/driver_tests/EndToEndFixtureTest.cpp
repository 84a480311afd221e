#include <gmock/gmock.h>

#include "end_to_end/driver/EndToEndTest.h"

namespace navora::driver {
namespace {

// The fixture with the sample browser as the application.
class EndToEndFixtureTest : public EndToEndTest {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.executable = SAMPLE_BROWSER};
  }
};

TEST_F(EndToEndFixtureTest, SignsInThroughTheLoginPage) {
  signIn();
  const auto requests = serviceClient().waitForRequests("POST", "/login");
  EXPECT_EQ(requests.front().body, "name=demo&password=demo");
  EXPECT_EQ(page().evaluate("return (await fetch('/api/auth/me')).status"), Json(200));
  serviceClient().signEverybodyOut();
  // The page may notice it first and leave for the login page, which aborts its requests.
  page().waitUntilTrue(
      "location.pathname === '/login' ||"
      " await fetch('/api/auth/me').then((reply) => reply.status === 401, () => false)",
      "the session has ended");
}

TEST_F(EndToEndFixtureTest, EveryTestStartsWithoutStoredData) {
  page().waitUntilTrue("location.pathname === '/login'");
  for (const RecordedRequest& request : serviceClient().requests()) {
    EXPECT_FALSE(request.header("Cookie").has_value()) << request.describe();
  }
}

TEST_F(EndToEndFixtureTest, WidgetsAreThoseOfTheApplication) {
  EXPECT_EQ(widget("label", "A bar above the page").text(), "A bar above the page");
  EXPECT_FALSE(hasWidget("label", "Something else"));
}

TEST_F(EndToEndFixtureTest, SavesArtifacts) {
  std::filesystem::remove_all(artifacts());
  saveArtifacts();
  EXPECT_EQ(readFile(artifacts() / "screen.png").substr(1, 3), "PNG");
  EXPECT_NE(readFile(artifacts() / "windows.txt").find("Driver browser"), std::string::npos);
  EXPECT_NE(readFile(artifacts() / "widgets.txt").find("A bar above the page"), std::string::npos);
  EXPECT_NE(readFile(artifacts() / "requests.txt").find("GET /login"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(artifacts() / "logs/navora-service.out"));
}

TEST_F(EndToEndFixtureTest, ACrashIsReported) {
  EXPECT_TRUE(crashReport().empty());
  application().process().signal(SIGSEGV);
  application().process().wait();
  // A sanitizer handles the signal itself.
  EXPECT_THAT(crashReport(), testing::AnyOf(testing::HasSubstr("signal 11"),
                                            testing::HasSubstr("AddressSanitizer:DEADLYSIGNAL")));
  // Restarted, so that TearDown() does not report the crash that this test caused.
  launch();
}

}  // namespace
}  // namespace navora::driver
