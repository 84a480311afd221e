#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "hosts/linux/bus/LoginManager.h"
#include "hosts/linux/system/LinuxSystem.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

TEST(LinuxSystemTest, ReadsTheEnvironmentOnEachCall) {
  const LinuxSystem system{observeResume};
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_UNSET"), std::nullopt);
  const EnvironmentVariable first("NAVORA_TEST_SET", "one");
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_SET"), "one");
  const EnvironmentVariable second("NAVORA_TEST_SET", "");
  EXPECT_EQ(system.environmentVariable("NAVORA_TEST_SET"), "");
}

TEST(LinuxSystemTest, ReturnsTheSystemTime) {
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

TEST(LinuxSystemTest, UsesTheLocaleWithoutALanguageList) {
  const EnvironmentVariable list("LANGUAGE", std::nullopt);
  const EnvironmentVariable everything("LC_ALL", std::nullopt);
  const EnvironmentVariable messages("LC_MESSAGES", std::nullopt);
  const EnvironmentVariable locale("LANG", "ru_RU.UTF-8");
  EXPECT_THAT(LinuxSystem(observeResume).preferredLanguages(), IsSupersetOf({"ru_RU", "ru"}));
}

// The variables that choose the language of messages, in the order in which they are consulted.
class PreferredLanguagesTest : public testing::Test {
 protected:
  std::vector<std::string> languagesFor(const std::optional<std::string>& locale) {
    const EnvironmentVariable variable("LANG", locale);
    return LinuxSystem(observeResume).preferredLanguages();
  }

  const EnvironmentVariable list_{"LANGUAGE", std::nullopt};
  const EnvironmentVariable everything_{"LC_ALL", std::nullopt};
  const EnvironmentVariable messages_{"LC_MESSAGES", std::nullopt};
};

TEST_F(PreferredLanguagesTest, AreEnglishInThePosixLocale) {
  for (const std::string locale : {"C", "C.UTF-8", "C.utf8", "POSIX", "POSIX.UTF-8", ""})
    EXPECT_THAT(languagesFor(locale), ElementsAre("en")) << locale;
}

TEST_F(PreferredLanguagesTest, AreEnglishWithoutALocale) {
  EXPECT_THAT(languagesFor(std::nullopt), ElementsAre("en"));
}

TEST_F(PreferredLanguagesTest, DoNotEndInEnglishInAnotherLocale) {
  EXPECT_THAT(languagesFor("it_IT.UTF-8"), ElementsAre("it_IT.UTF-8", "it_IT", "it.UTF-8", "it"));
}

TEST_F(PreferredLanguagesTest, ALanguageListCountsInThePosixLocale) {
  const EnvironmentVariable list("LANGUAGE", "pt_BR:de");
  EXPECT_THAT(languagesFor("C.UTF-8"), testing::Contains("pt_BR"));
  EXPECT_THAT(languagesFor("C.UTF-8"), testing::Not(testing::Contains("en")));
}

TEST(LinuxSystemTest, TheTimeZoneOfTheEnvironmentTakesPrecedence) {
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
  // Replaces the link atomically, as systemd-timedated does.
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

TEST_F(TimeZoneChangeTest, IsReportedWhenTheLinkIsRemovedAndCreatedAgain) {
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

}  // namespace
}  // namespace navora
