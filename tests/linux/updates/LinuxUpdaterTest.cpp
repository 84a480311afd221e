#include "linux/updates/LinuxUpdaterTest.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "fakes/FakeBackgroundQueue.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using Choice = UserUpdateChoice;

// Notices files that are created in a folder, even if they are removed at once.
class CreationWatch {
 public:
  explicit CreationWatch(const std::filesystem::path& folder) {
    ::inotify_add_watch(events_.get(), folder.c_str(), IN_CREATE);
  }
  bool sawCreation() const {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const ssize_t size = ::read(events_.get(), buffer.data(), buffer.size());
    const auto* first = reinterpret_cast<const inotify_event*>(buffer.data());
    return size > 0 && (first->mask & IN_CREATE) != 0;
  }

 private:
  const FileDescriptor events_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
};

TEST_F(LinuxUpdaterTest, RunsFromTheCheckToTheRequestToQuit) {
  const auto archive = publish("1.1");
  check();
  EXPECT_THAT(userDriver_.shown,
              ElementsAre("checking", "found 1.1", "download", "extracting", "ready"));
  EXPECT_EQ(userDriver_.expected, archive.size());
  EXPECT_EQ(userDriver_.received, archive.size());
  EXPECT_EQ(terminations_, 1);
  // The installer waits until this process has exited.
  ASSERT_TRUE(waitUntil([&] { return !readFile(installerCall()).empty(); }));
  EXPECT_EQ(readFile(installerCall()),
            installed().string() + " " + updateFolder().string() + " 3 4\n");
  EXPECT_EQ(Installation::at(updateFolder() / "new/navora")->version(), "1.1");
}

TEST_F(LinuxUpdaterTest, OffersToQuitAgainIfTheApplicationDoesNotExit) {
  publish("1.1");
  check();
  ASSERT_TRUE(waitUntil([&] { return userDriver_.retry != nullptr; }));
  EXPECT_EQ(userDriver_.shown.back(), "installing, still running");
  userDriver_.retry();
  ASSERT_TRUE(waitUntil([&] { return terminations_ == 2; }));
}

TEST_F(LinuxUpdaterTest, ReportsThatThereIsNoNewerVersion) {
  publish("1.0");
  check();
  EXPECT_THAT(userDriver_.shown, ElementsAre("checking", "nothing", "dismissed"));
  EXPECT_EQ(delegate_.cycles, 1);
  EXPECT_TRUE(updater_->canCheckForUpdates());
}

TEST_F(LinuxUpdaterTest, ChangesNothingIfTheUserDeclines) {
  publish("1.1");
  userDriver_.whenFound = Choice::dismiss;
  check();
  EXPECT_THAT(userDriver_.shown, ElementsAre("checking", "found 1.1", "dismissed"));
  EXPECT_EQ(server_.requests("/archive-1.1").size(), 0U);
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, KeepsThePreparedVersionForTheNextSession) {
  publish("1.1");
  userDriver_.whenReady = Choice::dismiss;
  check();
  EXPECT_EQ(userDriver_.shown.back(), "dismissed");
  userDriver_.shown.clear();
  userDriver_.whenReady = Choice::install;
  check();
  EXPECT_THAT(userDriver_.shown, ElementsAre("checking", "found 1.1", "ready"));
  EXPECT_EQ(userDriver_.states.back().stage, UserUpdateState::Stage::downloaded);
  EXPECT_EQ(server_.requests("/archive-1.1").size(), 1U);
  EXPECT_EQ(terminations_, 1);
}

TEST_F(LinuxUpdaterTest, DownloadsAVersionNewerThanThePreparedOne) {
  publish("1.1");
  userDriver_.whenReady = Choice::dismiss;
  check();
  publish("1.2");
  check();
  EXPECT_EQ(userDriver_.states.back().stage, UserUpdateState::Stage::notDownloaded);
  EXPECT_EQ(Installation::at(updateFolder() / "new/navora")->version(), "1.2");
}

TEST_F(LinuxUpdaterTest, RemovesThePreparedVersionWhenDestroyed) {
  publish("1.1");
  userDriver_.whenReady = Choice::dismiss;
  check();
  EXPECT_TRUE(std::filesystem::exists(updateFolder()));
  updater_.reset();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, StopsTheDownloadWhenItIsCancelled) {
  publish("1.1");
  userDriver_.onShow = [this](const std::string& what) {
    if (what == "data") queue_.async(userDriver_.cancel);
  };
  server_.serve("/archive-1.1",
                {.body = "only the beginning",
                 .head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(1000) + "\r\n"});
  feed_ = {};
  FeedItem item;
  item.version = "1.1";
  item.archiveUrl = "archive-1.1";
  item.archiveLength = 1000;
  item.archiveSignature = key_.sign({});
  server_.serve("/appcast.xml", {.body = *addToFeed("", item)});
  check();
  EXPECT_THAT(userDriver_.shown, ElementsAre("checking", "found 1.1", "download", "dismissed"));
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, CanInstallAVersionWhoseUnpackingWasCancelledBefore) {
  publish("1.1");
  userDriver_.onShow = [this](const std::string& what) {
    if (what == "extracting") queue_.async(userDriver_.cancel);
  };
  check();
  EXPECT_THAT(userDriver_.shown,
              ElementsAre("checking", "found 1.1", "download", "extracting", "dismissed"));
  EXPECT_EQ(error(), "");
  userDriver_.onShow = [](const std::string&) {};
  userDriver_.shown.clear();
  // Immediately, while the cancelled work may still own the folder.
  check();
  EXPECT_THAT(userDriver_.shown,
              ElementsAre("checking", "found 1.1", "download", "extracting", "ready"));
  EXPECT_EQ(terminations_, 1);
}

TEST_F(LinuxUpdaterTest, StopsUnpackingWhenItIsDestroyed) {
  publish("1.1");
  FakeBackgroundQueue backgroundQueue;
  make(queue_, backgroundQueue);
  updater_->checkForUpdates();
  ASSERT_TRUE(waitUntil([&] {
    const bool unpacks = userDriver_.shown.back() == "extracting";
    if (!unpacks && backgroundQueue.waiting() > 0) backgroundQueue.finishAll();
    return unpacks;
  }));
  updater_.reset();
  // The work that has not started owns the folder.
  const auto unpacked = updateFolder() / "new";
  ASSERT_TRUE(std::filesystem::create_directory(unpacked));
  const CreationWatch watch(unpacked);
  backgroundQueue.workOnNext();
  EXPECT_FALSE(watch.sawCreation());
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, StopsTheCheckWhenItIsCancelled) {
  TcpServer silent([](TcpConnection& connection) { connection.readRequest(); });
  publish("1.1");
  make(queue_);
  userDriver_.onShow = [this](const std::string& what) {
    if (what == "checking") queue_.async(userDriver_.cancel);
  };
  check();
  EXPECT_EQ(userDriver_.shown.back(), "dismissed");
  EXPECT_EQ(error(), "");
}

TEST_F(LinuxUpdaterTest, CanBeDestroyedDuringADownload) {
  publish("1.1");
  make(queue_);
  updater_->checkForUpdates();
  ASSERT_TRUE(waitUntil([&] { return userDriver_.shown.size() >= 3; }));
  updater_.reset();
  runPendingEvents();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, OnlyAnnouncesIfTheInstallationIsNotReplaceable) {
  publish("1.1");
  writeFile(installed() / "notes.txt", "mine");
  check();
  EXPECT_TRUE(userDriver_.items.front().isInformationOnlyUpdate);
  EXPECT_EQ(server_.requests("/archive-1.1").size(), 0U);
}

TEST_F(LinuxUpdaterTest, ReportsErrorsOnlyOfChecksByTheUser) {
  server_.serve("/appcast.xml", {.body = "no feed"});
  make(queue_);
  updater_->checkForUpdatesInBackground();
  ASSERT_TRUE(waitUntil([&] { return !updater_->sessionInProgress(); }));
  EXPECT_THAT(userDriver_.shown, ElementsAre("dismissed"));
  check();
  EXPECT_THAT(error(), StartsWith("feed: The feed is not XML"));
}

TEST_F(LinuxUpdaterTest, FocusesTheSessionInProgressInsteadOfASecondOne) {
  publish("1.1");
  make(queue_);
  updater_->checkForUpdates();
  EXPECT_FALSE(updater_->canCheckForUpdates());
  updater_->checkForUpdates();
  updater_->checkForUpdatesInBackground();
  EXPECT_THAT(userDriver_.shown, ElementsAre("checking", "focus"));
  ASSERT_TRUE(waitUntil([&] { return terminations_ == 1; }));
  EXPECT_EQ(server_.requests("/appcast.xml").size(), 1U);
}

TEST_F(LinuxUpdaterTest, NotifiesObserversWhenASessionStartsAndEnds) {
  publish("1.0");
  make(queue_);
  std::vector<bool> progress;
  const auto token = updater_->observeSessionInProgress(
      [&] { progress.push_back(updater_->sessionInProgress()); });
  check();
  EXPECT_THAT(progress, ElementsAre(true, false));
}

TEST_F(LinuxUpdaterTest, DoesNotCallAnObserverThatAnotherOneDestroyed) {
  struct Observer {
    int calls = 0;
    std::unique_ptr<ObserverToken> token;
  };
  publish("1.0");
  make(queue_);
  int calls = 0;
  auto second = std::make_unique<Observer>();
  const auto first = updater_->observeCanCheckForUpdates([&] { second.reset(); });
  // Reads memory that the first observer has freed, should it be called.
  second->token = updater_->observeSessionInProgress([&calls, observer = second.get()] {
    ++observer->calls;
    ++calls;
  });
  check();
  EXPECT_EQ(calls, 0);
}

TEST_F(LinuxUpdaterTest, LetsAnObserverDestroyItselfAndAddAnother) {
  publish("1.0");
  make(queue_);
  std::vector<std::string> seen;
  std::unique_ptr<ObserverToken> token;
  std::unique_ptr<ObserverToken> next;
  token = updater_->observeSessionInProgress([&, name = std::string("the first observer")] {
    token.reset();
    next = updater_->observeSessionInProgress([&] { seen.emplace_back("the next observer"); });
    seen.push_back(name);
  });
  check();
  EXPECT_THAT(seen, ElementsAre("the first observer", "the next observer"));
}

}  // namespace
}  // namespace navora
