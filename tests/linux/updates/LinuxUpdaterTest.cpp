#include "linux/updates/LinuxUpdaterTest.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace navora {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using Choice = UserUpdateChoice;

TEST_F(LinuxUpdaterTest, LeadsFromTheCheckToTheEndOfTheApplication) {
  const auto archive = publish("1.1");
  check();
  EXPECT_THAT(userDriver.shown,
              ElementsAre("checking", "found 1.1", "download", "extracting", "ready"));
  EXPECT_EQ(userDriver.expected, archive.size());
  EXPECT_EQ(userDriver.received, archive.size());
  EXPECT_EQ(terminations, 1);
  // The installer waits for the end of this process.
  ASSERT_TRUE(waitUntil([&] { return !readFile(installerCall()).empty(); }));
  EXPECT_EQ(readFile(installerCall()),
            installed().string() + " " + updateFolder().string() + " 3 4\n");
  EXPECT_EQ(Installation::at(updateFolder() / "new/navora")->version(), "1.1");
}

TEST_F(LinuxUpdaterTest, OffersToEndTheApplicationAgainWhenItDoesNotEnd) {
  publish("1.1");
  check();
  ASSERT_TRUE(waitUntil([&] { return userDriver.retry != nullptr; }));
  EXPECT_EQ(userDriver.shown.back(), "installing, still running");
  userDriver.retry();
  ASSERT_TRUE(waitUntil([&] { return terminations == 2; }));
}

TEST_F(LinuxUpdaterTest, SaysSoWhenThereIsNothingNewer) {
  publish("1.0");
  check();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "nothing", "dismissed"));
  EXPECT_EQ(delegate.cycles, 1);
  EXPECT_TRUE(updater->canCheckForUpdates());
}

TEST_F(LinuxUpdaterTest, LeavesEverythingAsItWasWhenTheUserDeclines) {
  publish("1.1");
  userDriver.whenFound = Choice::dismiss;
  check();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "found 1.1", "dismissed"));
  EXPECT_EQ(server.requests("/archive-1.1").size(), 0U);
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, KeepsWhatIsReadyForTheNextTime) {
  publish("1.1");
  userDriver.whenReady = Choice::dismiss;
  check();
  EXPECT_EQ(userDriver.shown.back(), "dismissed");
  userDriver.shown.clear();
  userDriver.whenReady = Choice::install;
  check();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "found 1.1", "ready"));
  EXPECT_EQ(userDriver.states.back().stage, UserUpdateState::Stage::downloaded);
  EXPECT_EQ(server.requests("/archive-1.1").size(), 1U);
  EXPECT_EQ(terminations, 1);
}

TEST_F(LinuxUpdaterTest, FetchesAnewWhenAnotherVersionHasOvertakenTheReadyOne) {
  publish("1.1");
  userDriver.whenReady = Choice::dismiss;
  check();
  publish("1.2");
  check();
  EXPECT_EQ(userDriver.states.back().stage, UserUpdateState::Stage::notDownloaded);
  EXPECT_EQ(Installation::at(updateFolder() / "new/navora")->version(), "1.2");
}

TEST_F(LinuxUpdaterTest, RemovesWhatIsReadyAtItsEnd) {
  publish("1.1");
  userDriver.whenReady = Choice::dismiss;
  check();
  EXPECT_TRUE(std::filesystem::exists(updateFolder()));
  updater.reset();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, StopsTheDownloadWhenItIsCancelled) {
  publish("1.1");
  userDriver.onShow = [this](const std::string& what) {
    if (what == "data") queue_.async(userDriver.cancel);
  };
  server.serve("/archive-1.1",
               {.body = "only the beginning",
                .head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(1000) + "\r\n"});
  feed_ = {};
  FeedItem item;
  item.version = "1.1";
  item.archiveUrl = "archive-1.1";
  item.archiveLength = 1000;
  item.archiveSignature = key_.sign({});
  server.serve("/appcast.xml", {.body = *addToFeed("", item)});
  check();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "found 1.1", "download", "dismissed"));
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, StopsTheCheckWhenItIsCancelled) {
  TcpServer silent([](TcpConnection& connection) { connection.readRequest(); });
  publish("1.1");
  make(queue_);
  userDriver.onShow = [this](const std::string& what) {
    if (what == "checking") queue_.async(userDriver.cancel);
  };
  check();
  EXPECT_EQ(userDriver.shown.back(), "dismissed");
  EXPECT_EQ(error(), "");
}

TEST_F(LinuxUpdaterTest, EndsQuietlyInTheMiddleOfADownload) {
  publish("1.1");
  make(queue_);
  updater->checkForUpdates();
  ASSERT_TRUE(waitUntil([&] { return userDriver.shown.size() >= 3; }));
  updater.reset();
  runPendingEvents();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, OnlyAnnouncesWhereTheInstallationCannotBeReplaced) {
  publish("1.1");
  writeFile(installed() / "notes.txt", "mine");
  check();
  EXPECT_TRUE(userDriver.items.front().isInformationOnlyUpdate);
  EXPECT_EQ(server.requests("/archive-1.1").size(), 0U);
}

TEST_F(LinuxUpdaterTest, TellsTheUserOnlyWhenTheUserHasAsked) {
  server.serve("/appcast.xml", {.body = "no feed"});
  make(queue_);
  updater->checkForUpdatesInBackground();
  ASSERT_TRUE(waitUntil([&] { return !updater->sessionInProgress(); }));
  EXPECT_THAT(userDriver.shown, ElementsAre("dismissed"));
  check();
  EXPECT_THAT(error(), StartsWith("feed: The feed is not XML"));
}

TEST_F(LinuxUpdaterTest, ShowsTheSessionThatIsUnderWayInsteadOfASecondOne) {
  publish("1.1");
  make(queue_);
  updater->checkForUpdates();
  EXPECT_FALSE(updater->canCheckForUpdates());
  updater->checkForUpdates();
  updater->checkForUpdatesInBackground();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "focus"));
  ASSERT_TRUE(waitUntil([&] { return terminations == 1; }));
  EXPECT_EQ(server.requests("/appcast.xml").size(), 1U);
}

TEST_F(LinuxUpdaterTest, TellsWhenASessionBeginsAndEnds) {
  publish("1.0");
  make(queue_);
  std::vector<bool> progress;
  const auto token =
      updater->observeSessionInProgress([&] { progress.push_back(updater->sessionInProgress()); });
  check();
  EXPECT_THAT(progress, ElementsAre(true, false));
}

}  // namespace
}  // namespace navora
