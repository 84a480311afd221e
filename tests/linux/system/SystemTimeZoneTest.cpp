#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "hosts/linux/system/SystemTimeZone.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class SystemTimeZoneTest : public testing::Test {
 protected:
  void link(const std::string& target) {
    std::filesystem::create_symlink(target, folder_.path() / "localtime");
  }
  void name(const std::string& content) { writeFile(folder_.path() / "timezone", content); }
  std::string identifier(const std::optional<std::string>& environment = std::nullopt) const {
    return SystemTimeZone(folder_.path()).identifier(environment);
  }

  const TemporaryDirectory folder_{"navora-time-zone"};
};

TEST_F(SystemTimeZoneTest, IsNamedByTheLink) {
  link("/usr/share/zoneinfo/America/Argentina/Buenos_Aires");
  EXPECT_EQ(identifier(), "America/Argentina/Buenos_Aires");
}

TEST_F(SystemTimeZoneTest, IsNamedByARelativeLink) {
  link("../usr/share/zoneinfo/Europe/Riga");
  EXPECT_EQ(identifier(), "Europe/Riga");
}

TEST_F(SystemTimeZoneTest, PosixAndRightAreNotPartOfTheName) {
  link("/usr/share/zoneinfo/posix/Europe/Riga");
  EXPECT_EQ(identifier(), "Europe/Riga");
  std::filesystem::remove(folder_.path() / "localtime");
  link("/usr/share/zoneinfo/right/Asia/Tokyo");
  EXPECT_EQ(identifier(), "Asia/Tokyo");
}

TEST_F(SystemTimeZoneTest, IsNamedByADanglingLink) {
  link((folder_.path() / "missing/zoneinfo/Europe/Kyiv").string());
  EXPECT_EQ(identifier(), "Europe/Kyiv");
}

TEST_F(SystemTimeZoneTest, TheLinkTakesPrecedenceOverTheFile) {
  link("/usr/share/zoneinfo/Europe/Riga");
  name("Asia/Tokyo\n");
  EXPECT_EQ(identifier(), "Europe/Riga");
}

TEST_F(SystemTimeZoneTest, TheFileNamesACopiedZone) {
  writeFile(folder_.path() / "localtime", "TZif2");
  name("  Asia/Tokyo \n");
  EXPECT_EQ(identifier(), "Asia/Tokyo");
}

TEST_F(SystemTimeZoneTest, ALinkElsewhereFallsBackToTheFile) {
  link("/somewhere/else");
  name("Asia/Tokyo");
  EXPECT_EQ(identifier(), "Asia/Tokyo");
}

TEST_F(SystemTimeZoneTest, IsUtcIfNothingNamesIt) {
  EXPECT_EQ(identifier(), "UTC");
}

TEST_F(SystemTimeZoneTest, BlankNamesAreIgnored) {
  link("/usr/share/zoneinfo/");
  name(" \n");
  EXPECT_EQ(identifier(), "UTC");
  EXPECT_EQ(identifier(""), "UTC");
}

TEST_F(SystemTimeZoneTest, TheEnvironmentTakesPrecedence) {
  link("/usr/share/zoneinfo/Europe/Riga");
  EXPECT_EQ(identifier("Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(identifier(":Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(identifier("/usr/share/zoneinfo/Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(identifier(":/usr/share/zoneinfo/right/Asia/Tokyo"), "Asia/Tokyo");
}

// Some systems set TZ=:/etc/localtime, which saves the C library a stat() per use.
TEST_F(SystemTimeZoneTest, AFileInTheEnvironmentNamesItsZone) {
  link("/usr/share/zoneinfo/Europe/Riga");
  const std::string file = (folder_.path() / "localtime").string();
  EXPECT_EQ(identifier(":" + file), "Europe/Riga");
  EXPECT_EQ(identifier(file), "Europe/Riga");
}

TEST_F(SystemTimeZoneTest, AnEnvironmentThatNamesNoZoneLeavesTheSystemsZone) {
  link("/usr/share/zoneinfo/Europe/Riga");
  for (const std::string value :
       {"<+03>-3", ":<+03>-3", "MSK-3", "CET-1CEST,M3.5.0,M10.5.0/3", "GMT+3", "Nowhere/Invented",
        "Europe", "zone.tab", "localtime", ":localtime", "/usr/share/zoneinfo/localtime",
        "/usr/share/zoneinfo/Nowhere", "/usr/share/zoneinfo/", "../../../etc/passwd"}) {
    EXPECT_EQ(identifier(value), "Europe/Riga") << value;
  }
}

TEST_F(SystemTimeZoneTest, ARuleThatIsAlsoAZonesNameNamesIt) {
  link("/usr/share/zoneinfo/Europe/Riga");
  EXPECT_EQ(identifier("EST5EDT"), "EST5EDT");
  EXPECT_EQ(identifier("UTC"), "UTC");
}

TEST_F(SystemTimeZoneTest, AnEmptyEnvironmentLeavesTheSystemsZone) {
  link("/usr/share/zoneinfo/Europe/Riga");
  EXPECT_EQ(identifier(":"), "Europe/Riga");
  EXPECT_EQ(identifier("/somewhere/else"), "Europe/Riga");
}

TEST_F(SystemTimeZoneTest, IsReadOnEachCall) {
  const SystemTimeZone timeZone(folder_.path());
  link("/usr/share/zoneinfo/Europe/Riga");
  EXPECT_EQ(timeZone.identifier(std::nullopt), "Europe/Riga");
  std::filesystem::remove(folder_.path() / "localtime");
  link("/usr/share/zoneinfo/Asia/Tokyo");
  EXPECT_EQ(timeZone.identifier(std::nullopt), "Asia/Tokyo");
}

}  // namespace
}  // namespace navora
