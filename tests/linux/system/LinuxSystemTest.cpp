#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <gio/gio.h>
#include <gmock/gmock.h>

#include "end_to_end/driver/FakeLogind.h"
#include "hosts/linux/bus/LoginManager.h"
#include "hosts/linux/system/LinuxSystem.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

TEST(LinuxSystemTest, ReadsTheEnvironmentAnew) {
  const LinuxSystem system{observeResume};
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_UNSET"), std::nullopt);
  const EnvironmentVariable first("NAVORA_TEST_SET", "one");
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_SET"), "one");
  const EnvironmentVariable second("NAVORA_TEST_SET", "");
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_SET"), "");
}

TEST(LinuxSystemTest, TellsTheTimeOfTheMachine) {
  const LinuxSystem system{observeResume};
  const Date before = std::chrono::system_clock::now();
  const Date told = system.now();
  const Date after = std::chrono::system_clock::now();
  EXPECT_LE(before, told);
  EXPECT_LE(told, after);
}

std::vector<std::string>::difference_type placeOf(const std::vector<std::string>& list,
                                                  const std::string& entry) {
  return std::ranges::find(list, entry) - list.begin();
}

TEST(LinuxSystemTest, PrefersTheLanguageListInItsOrder) {
  const EnvironmentVariable list("LANGUAGE", "pt_BR:de");
  const EnvironmentVariable locale("LANG", "ru_RU.UTF-8");
  const auto languages = LinuxSystem(observeResume).preferredLanguages();
  ASSERT_THAT(languages, IsSupersetOf({"pt_BR", "de"}));
  EXPECT_EQ(languages.front(), "pt_BR");
  EXPECT_LT(placeOf(languages, "pt_BR"), placeOf(languages, "de"));
}

TEST(LinuxSystemTest, TakesTheLanguageOfTheLocaleWithoutAList) {
  const EnvironmentVariable list("LANGUAGE", std::nullopt);
  const EnvironmentVariable everything("LC_ALL", std::nullopt);
  const EnvironmentVariable messages("LC_MESSAGES", std::nullopt);
  const EnvironmentVariable locale("LANG", "ru_RU.UTF-8");
  EXPECT_THAT(LinuxSystem(observeResume).preferredLanguages(), IsSupersetOf({"ru_RU", "ru"}));
}

TEST(LinuxSystemTest, ReadsTheTimeZoneOfTheFolderUnlessTheEnvironmentHasOne) {
  const TemporaryDirectory folder("navora-system");
  std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Riga", folder.path() / "localtime");
  const LinuxSystem system{observeResume, SystemTimeZone(folder.path())};
  const EnvironmentVariable unset("TZ", std::nullopt);
  EXPECT_EQ(system.timeZoneIdentifier(), "Europe/Riga");
  const EnvironmentVariable set("TZ", "Asia/Tokyo");
  EXPECT_EQ(system.timeZoneIdentifier(), "Asia/Tokyo");
}

class TimeZoneChangeTest : public testing::Test {
 protected:
  void SetUp() override { link("Europe/Riga"); }

  void link(const std::string& zone) {
    std::filesystem::create_symlink("/usr/share/zoneinfo/" + zone, localTime_);
  }
  // As the system's own tool does it: the new link takes the place of the old one at once.
  void replaceLink(const std::string& zone) {
    const auto fresh = folder_.path() / "fresh";
    std::filesystem::create_symlink("/usr/share/zoneinfo/" + zone, fresh);
    std::filesystem::rename(fresh, localTime_);
  }

  const TemporaryDirectory folder_{"navora-system"};
  const std::filesystem::path localTime_ = folder_.path() / "localtime";
  LinuxSystem system_{observeResume, SystemTimeZone(folder_.path())};
  const EnvironmentVariable unset_{"TZ", std::nullopt};
};

TEST_F(TimeZoneChangeTest, IsReportedWhenTheLinkIsReplaced) {
  std::string zone;
  const auto token = system_.observeTimeZoneChange([&] { zone = system_.timeZoneIdentifier(); });
  replaceLink("Asia/Tokyo");
  ASSERT_TRUE(waitUntil([&] { return zone == "Asia/Tokyo"; })) << zone;
  replaceLink("America/Lima");
  ASSERT_TRUE(waitUntil([&] { return zone == "America/Lima"; })) << zone;
}

TEST_F(TimeZoneChangeTest, IsReportedWhenTheLinkIsRemovedAndMadeAgain) {
  std::string zone;
  const auto token = system_.observeTimeZoneChange([&] { zone = system_.timeZoneIdentifier(); });
  std::filesystem::remove(localTime_);
  link("Asia/Tokyo");
  ASSERT_TRUE(waitUntil([&] { return zone == "Asia/Tokyo"; })) << zone;
}

TEST_F(TimeZoneChangeTest, IsReportedWhenACopiedZoneIsOverwritten) {
  std::filesystem::remove(localTime_);
  writeFile(localTime_, "TZif2 old");
  bool changed = false;
  const auto token = system_.observeTimeZoneChange([&] { changed = true; });
  writeFile(localTime_, "TZif2 new");
  EXPECT_TRUE(waitUntil([&] { return changed; }));
}

class WakeTest : public testing::Test {
 protected:
  // The observer joins the bus in its own time: one that is there sees the machine wake up.
  testing::AssertionResult wakeUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (condition()) return true;
      loginManager_.announceWake();
      return false;
    });
  }

  driver::FakeLogind loginManager_{TestDesktop::systemBusAddress()};
  LinuxSystem system_{observeResume};
};

TEST_F(WakeTest, IsReportedButGoingToSleepIsNot) {
  int wakes = 0;
  const auto token = system_.observeWake([&] { ++wakes; });
  ASSERT_TRUE(wakeUntil([&] { return wakes > 0; }));

  // Signals of one sender keep their order: when the marker has come, so has all before it.
  bool marked = false;
  const auto marker = system_.observeWake([&] { marked = true; });
  ASSERT_TRUE(wakeUntil([&] { return marked; }));
  marked = false;
  loginManager_.announceWake();
  ASSERT_TRUE(waitUntil([&] { return marked; }));
  runPendingEvents();
  wakes = 0;
  loginManager_.announceSleep();
  loginManager_.announceSleep();
  loginManager_.announceWake();
  ASSERT_TRUE(waitUntil([&] { return wakes > 0; }));
  EXPECT_EQ(wakes, 1);
}

// In a process of its own, which has never been on the bus.
TEST(WakeDeathTest, WithoutASystemBusNothingIsReportedAndNothingFails) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EnvironmentVariable nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        LinuxSystem system{observeResume};
        auto token = system.observeWake([] { std::exit(2); });
        bool asked = false;
        g_bus_get(
            G_BUS_TYPE_SYSTEM, nullptr,
            [](GObject*, GAsyncResult* result, gpointer done) {
              if (g_bus_get_finish(result, nullptr) != nullptr) std::exit(3);
              *static_cast<bool*>(done) = true;
            },
            &asked);
        const bool answered = static_cast<bool>(waitUntil([&] { return asked; }));
        runPendingEvents();
        token.reset();
        std::exit(answered ? 0 : 4);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace navora
