#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"
#include "end_to_end/driver/FakeLogind.h"
#include "end_to_end/driver/OtherWindow.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

class SystemEventsTest : public TestPageTest {
 protected:
  static constexpr const char* zone = "Asia/Tokyo";

  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"TZ", zone}}};
  }

  void SetUp() override {
    TestPageTest::SetUp();
    if (HasFatalFailure()) return;
    openBridgePage();
    page().evaluate("window.events = []; window.NavoraSystemTimeZone = 'old'");
  }

  void activateMainWindow() {
    const auto window = application().waitForMainWindow();
    desktop().display().activate(window.id);
    desktop().display().waitUntilActive(window.id);
  }

  void waitForResumes(int count) {
    page().waitUntilTrue("window.events.filter((event) => event.startsWith('resume')).length >= " +
                             std::to_string(count),
                         "the page was told to resume");
  }

  // Expects this number of resume events, each directly after a time zone event.
  void expectResumes(int count) {
    waitForResumes(count);
    settle();
    const std::string publication = std::string("systemtimezonechange ") + zone;
    const std::vector<std::string> events = page().evaluate("return window.events");
    int resumes = 0;
    std::string previous;
    for (const std::string& event : events) {
      if (event != publication) {
        EXPECT_EQ(event, std::string("resume ") + zone);
        EXPECT_EQ(previous, publication);
        ++resumes;
      }
      previous = event;
    }
    EXPECT_EQ(resumes, count);
  }
};

TEST_F(SystemEventsTest, NotifiesThePageOnceOfEveryWakeAndNotOfSleep) {
  FakeLogind logind(desktop().systemBusAddress());
  logind.announceSleep();
  logind.announceWake();
  waitForResumes(1);
  logind.announceSleep();
  logind.announceSleep();
  logind.announceWake();
  expectResumes(2);
}

TEST_F(SystemEventsTest, NotifiesThePageOnceThatTheApplicationIsActiveAgain) {
  const OtherWindow other(desktop().display());
  activateMainWindow();
  expectResumes(1);
}

TEST_F(SystemEventsTest, NotifiesAPageWhoseWindowIsShownAgain) {
  desktop().display().close(application().waitForMainWindow().id);
  application().waitUntilMainWindowHidden();
  application().run({});
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  expectResumes(1);
}

TEST_F(SystemEventsTest, DoesNotNotifyAnActivePage) {
  activateMainWindow();
  activateMainWindow();
  FakeLogind logind(desktop().systemBusAddress());
  logind.announceWake();
  expectResumes(1);
}

TEST_F(SystemEventsTest, DoesNotNotifyThePageWhenADialogOfItsOwnHasTheFocus) {
  page().evaluate("setTimeout(() => alert('Read this')); return true");
  widget("push button", "OK").press();
  waitUntil([&] { return !hasWidget("alert"); }, "the alert is closed");
  expectResumes(0);
}

struct Zone {
  const char* name;
  std::string variable;
  std::string published;
};

// Returns the zone that the machine's configuration names.
std::string machinesZone() {
  std::error_code error;
  const std::string file = std::filesystem::read_symlink("/etc/localtime", error);
  const std::string folder = "/zoneinfo/";
  const auto found = file.rfind(folder);
  return found == std::string::npos ? "UTC" : file.substr(found + folder.size());
}

class TimeZoneVariableTest : public TestPageTest, public testing::WithParamInterface<Zone> {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"TZ", GetParam().variable}}};
  }
};

TEST_P(TimeZoneVariableTest, IsPublishedBeforeThePagesFirstScriptAndWithEveryRefresh) {
  openBridgePage();
  EXPECT_EQ(page().evaluate("return window.zoneAtFirstScript"), GetParam().published);
  page().evaluate("window.NavoraSystemTimeZone = 'old'; await roundTrip()");
  EXPECT_EQ(page().evaluate("return window.NavoraSystemTimeZone"), GetParam().published);
}

INSTANTIATE_TEST_SUITE_P(
    Variable, TimeZoneVariableTest,
    testing::Values(Zone{"Name", "Pacific/Auckland", "Pacific/Auckland"},
                    Zone{"NameAfterAColon", ":America/New_York", "America/New_York"},
                    Zone{"PathOfAZone", ":/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin"},
                    Zone{"UnknownName", "Nowhere/Invented", machinesZone()},
                    Zone{"Rule", "<+03>-3", machinesZone()}),
    [](const auto& zone) { return zone.param.name; });

class OddTimeZoneTest : public TestPageTest {
 protected:
  static constexpr const char* zone = "A'\\\"`</script><!--\xE2\x80\xA8";

  void prepare() override {
    writeFile(file(), readFile("/usr/share/zoneinfo/Europe/Berlin"));
    TestPageTest::prepare();
  }
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"TZ", ":" + file().string()}}};
  }

 private:
  std::filesystem::path file() const { return folder_.path() / "zoneinfo" / zone; }

  const TemporaryDirectory folder_{"navora-time-zone"};
};

TEST_F(OddTimeZoneTest, IsPublishedUnchangedWhateverItsName) {
  openBridgePage();
  EXPECT_EQ(page().evaluate("return window.zoneAtFirstScript"), zone);
  page().evaluate("window.NavoraSystemTimeZone = 'old'; await roundTrip()");
  EXPECT_EQ(page().evaluate("return window.NavoraSystemTimeZone"), zone);
}

}  // namespace
}  // namespace navora::driver
