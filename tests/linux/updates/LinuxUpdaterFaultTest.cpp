#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "linux/updates/LinuxUpdaterTest.h"

namespace navora {
namespace {

using std::filesystem::path;
using testing::HasSubstr;

// An invalid feed or archive is reported with its reason, and nothing changes.
class LinuxUpdaterFaultTest : public LinuxUpdaterTest {
 protected:
  void expectError(const std::string& expected) {
    check();
    EXPECT_THAT(error(), HasSubstr(expected));
    EXPECT_EQ(userDriver_.shown.back(), "dismissed");
    EXPECT_EQ(terminations_, 0);
    EXPECT_FALSE(std::filesystem::exists(updateFolder()));
    EXPECT_EQ(Installation::at(installed())->version(), "1.0");
    EXPECT_TRUE(updater_->canCheckForUpdates());
  }
};

TEST_F(LinuxUpdaterFaultTest, MissingFeed) {
  expectError("feed: The server answered 404");
}

TEST_F(LinuxUpdaterFaultTest, FeedThatIsTooLong) {
  server_.serve("/appcast.xml", {.body = std::string(5 * 1024 * 1024, ' ')});
  expectError("feed: The feed is too long");
}

TEST_F(LinuxUpdaterFaultTest, RedirectedFeed) {
  server_.serve(
      "/appcast.xml",
      {.body = "", .head = "HTTP/1.1 302 Found\r\nLocation: /other.xml\r\nContent-Length: 0\r\n"});
  expectError("feed: The server answered 302");
  EXPECT_EQ(server_.requests("/other.xml").size(), 0U);
}

TEST_F(LinuxUpdaterFaultTest, TruncatedFeed) {
  server_.serve("/appcast.xml",
                {.body = "<rss", .head = "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n"});
  expectError("feed: ");
}

TEST_F(LinuxUpdaterFaultTest, FeedWithAnInvalidSignature) {
  publish("1.1");
  server_.serve("/appcast.xml",
                {.body = feed_ + "<!-- sparkle-signatures:\nedSignature: " + key_.sign({}) +
                         "\nlength: " + std::to_string(feed_.size()) + "\n-->\n"});
  expectError("feed: The signature of the feed is not valid");
}

TEST_F(LinuxUpdaterFaultTest, ArchiveAtAnInsecureAddress) {
  FeedItem item;
  item.archiveUrl = "http://updates.example/archive";
  publish("1.1", key_, item);
  expectError("download: The archive is not at a secure address");
}

TEST_F(LinuxUpdaterFaultTest, MissingArchive) {
  publish("1.1");
  server_.serve("/archive-1.1",
                {.body = "gone", .head = "HTTP/1.1 410 Gone\r\nContent-Length: 4\r\n"});
  expectError("download: The server answered 410");
}

TEST_F(LinuxUpdaterFaultTest, ArchiveOfAnotherLength) {
  publish("1.1");
  server_.serve("/archive-1.1", {.body = "short"});
  expectError("download: The archive has another length than announced");
}

TEST_F(LinuxUpdaterFaultTest, TruncatedArchive) {
  const auto archive = publish("1.1");
  server_.serve(
      "/archive-1.1",
      {.body = archive.substr(0, archive.size() / 2),
       .head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(archive.size()) + "\r\n"});
  expectError("download: ");
}

TEST_F(LinuxUpdaterFaultTest, ArchiveWithoutLengthThatIsTooLong) {
  const auto archive = publish("1.1");
  server_.serve("/archive-1.1", {.body = archive + "more", .head = "HTTP/1.1 200 OK\r\n"});
  expectError("download: The archive has another length than announced");
}

TEST_F(LinuxUpdaterFaultTest, ArchiveWithOneByteChanged) {
  auto archive = publish("1.1");
  archive[archive.size() / 2] = static_cast<char>(archive[archive.size() / 2] ^ 1);
  server_.serve("/archive-1.1", {.body = archive});
  expectError("verification: The signature of the archive is not valid");
}

TEST_F(LinuxUpdaterFaultTest, ArchiveSignedWithAnotherKey) {
  publish("1.1", SigningKey::make());
  expectError("verification: The signature of the archive is not valid");
}

TEST_F(LinuxUpdaterFaultTest, OldArchiveUnderANewVersion) {
  const path archive = folder_.path() / "old";
  ASSERT_EQ(writeArchive(built(), "0.9", archive), std::nullopt);
  FeedItem item;
  item.version = "1.1";
  item.archiveUrl = "old";
  item.archiveLength = std::filesystem::file_size(archive);
  item.archiveSignature = *key_.signFile(archive);
  server_.serve("/old", {.body = readFile(archive)});
  server_.serve("/appcast.xml", {.body = *addToFeed("", item)});
  expectError("verification: The archive holds version 0.9 in place of 1.1");
}

TEST_F(LinuxUpdaterFaultTest, NewVersionThatFailsItsSelfTest) {
  writeProgram(built() / "bin/navora", "exit 1");
  publish("1.1");
  expectError("verification: The new version does not run on this system");
}

TEST_F(LinuxUpdaterFaultTest, MissingInstaller) {
  publish("1.1");
  std::filesystem::remove_all(installed() / "libexec");
  expectError("installation: The installer does not start");
}

TEST_F(LinuxUpdaterFaultTest, UpdateInProgressInAnotherProgram) {
  publish("1.1");
  const auto other = UpdateFolder::claim(*Installation::at(installed()));
  ASSERT_TRUE(other);
  check();
  EXPECT_EQ(error(), "installation: Another program is updating the application");
}

}  // namespace
}  // namespace navora
