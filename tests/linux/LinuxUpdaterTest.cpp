#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "end_to_end/driver/Files.h"
#include "fakes/FakeMainQueue.h"
#include "fakes/FakeSystem.h"
#include "hosts/linux/LinuxMainQueue.h"
#include "hosts/linux/LinuxUpdater.h"
#include "linux/MainLoop.h"
#include "linux/RawServer.h"
#include "make-update/ArchiveWriter.h"
#include "make-update/Feed.h"
#include "make-update/SigningKey.h"
#include "platform/MemoryUserDefaults.h"

namespace navora {
namespace {

using driver::readFile;
using driver::TemporaryDirectory;
using driver::writeFile;
using std::filesystem::path;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Choice = UserUpdateChoice;

// Says yes to everything, and remembers what it was shown.
class RecordingDriver final : public UpdaterUserDriver {
 public:
  std::vector<std::string> shown;
  std::vector<AppcastItem> items;
  std::vector<UserUpdateState> states;
  Choice whenFound = Choice::install;
  Choice whenReady = Choice::install;
  std::uint64_t expected = 0;
  std::uint64_t received = 0;
  double extracted = 0;
  std::function<void()> cancel;
  std::function<void()> retry;
  std::function<void(const std::string&)> onShow = [](const std::string&) {};

  void showUpdatePermissionRequest(std::function<void(UpdatePermissionResponse)>) override {
    show("permission");
  }
  void showUserInitiatedUpdateCheck(std::function<void()> cancellation) override {
    cancel = std::move(cancellation);
    show("checking");
  }
  void showUpdateFound(const AppcastItem& item, UserUpdateState state, Choose reply) override {
    items.push_back(item);
    states.push_back(state);
    show("found " + item.versionString);
    reply(whenFound);
  }
  void showUpdateNotFound(const PlatformError&, std::function<void()> acknowledgement) override {
    show("nothing");
    acknowledgement();
  }
  void showUpdaterError(const PlatformError& error,
                        std::function<void()> acknowledgement) override {
    show("error " + error.localizedDescription);
    acknowledgement();
  }
  void showDownloadInitiated(std::function<void()> cancellation) override {
    cancel = std::move(cancellation);
    show("download");
  }
  void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) override {
    expected = length;
  }
  void showDownloadDidReceiveData(std::uint64_t length) override {
    received += length;
    onShow("data");
  }
  void showDownloadDidStartExtractingUpdate() override { show("extracting"); }
  void showExtractionReceivedProgress(double progress) override { extracted = progress; }
  void showReadyToInstallAndRelaunch(Choose reply) override {
    show("ready");
    reply(whenReady);
  }
  void showInstallingUpdate(bool terminated, std::function<void()> retryTerminating) override {
    retry = std::move(retryTerminating);
    show(terminated ? "installing" : "installing, still running");
  }
  void showUpdateInstalledAndRelaunched(bool, std::function<void()> acknowledgement) override {
    show("installed");
    acknowledgement();
  }
  void dismissUpdateInstallation() override { show("dismissed"); }
  void showUpdateInFocus() override { show("focus"); }

 private:
  void show(const std::string& what) {
    shown.push_back(what);
    onShow(what);
  }
};

class CountingDelegate final : public UpdaterDelegate {
 public:
  int cycles = 0;
  void didFinishUpdateCycle(const std::optional<PlatformError>&) override { ++cycles; }
};

// Serves texts by their path, each as often as it is asked for.
class ReleaseServer {
 public:
  void put(const std::string& target, const std::string& body, const std::string& head = {}) {
    const std::lock_guard lock(mutex_);
    answers_[target] =
        (head.empty() ? "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n"
                      : head) +
        "Connection: close\r\n\r\n" + body;
  }
  Url url(const std::string& target) const { return server_.url(target); }
  int count(const std::string& target) {
    const std::lock_guard lock(mutex_);
    return counts_[target];
  }

 private:
  void serve(RawServer::Connection& connection) {
    const std::string request = connection.readRequest();
    const auto begin = request.find(' ') + 1;
    const std::string target = request.substr(begin, request.find(' ', begin) - begin);
    std::string answer = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
    {
      const std::lock_guard lock(mutex_);
      ++counts_[target];
      if (const auto found = answers_.find(target); found != answers_.end()) answer = found->second;
    }
    connection.send(answer);
  }

  std::mutex mutex_;
  std::map<std::string, std::string> answers_;
  std::map<std::string, int> counts_;
  RawServer server_{[this](RawServer::Connection& connection) { serve(connection); }};
};

class LinuxUpdaterTest : public testing::Test {
 protected:
  LinuxUpdaterTest() { makeInstallation(); }

  // A Navora of scripts: its installer writes down how it was called.
  void makeInstallation() {
    writeProgram(built() / "bin/navora", "exit 0");
    writeProgram(built() / "libexec/navora/navora-install-update",
                 "echo \"$@\" > '" + installerCall().string() + "'");
    std::filesystem::create_directories(installed().parent_path());
    std::filesystem::copy(built(), installed(), std::filesystem::copy_options::recursive);
    writeFile(installed() / Installation::recordName, Installation::record("1.0"));
  }
  static void writeProgram(const path& file, const std::string& script) {
    writeFile(file, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms(0755));
  }

  path built() const { return folder_.path() / "built"; }
  path installed() const { return folder_.path() / "apps/navora"; }
  path updateFolder() const { return folder_.path() / "apps/.navora.update"; }
  path installerCall() const { return folder_.path() / "installer-call"; }

  // Puts a release of what was built into the feed; gives its archive's bytes.
  std::string publish(const std::string& version, const SigningKey& key, FeedItem item = {}) {
    const path archive = folder_.path() / "archive";
    EXPECT_EQ(writeArchive(built(), version, archive), std::nullopt);
    const std::string content = readFile(archive);
    item.version = version;
    if (item.archiveUrl.empty()) item.archiveUrl = "archive-" + version;
    item.archiveLength = content.size();
    item.archiveSignature = *key.signFile(archive);
    server.put("/archive-" + version, content);
    feed_ = *addToFeed(feed_, item);
    server.put("/appcast.xml", feed_);
    return content;
  }
  std::string publish(const std::string& version) { return publish(version, key_); }

  void make(MainQueue& queue) {
    UpdateSettings settings{server.url("/appcast.xml"), *readPublicKey(key_.publicText()), false};
    updater = std::make_unique<LinuxUpdater>(
        LinuxUpdater::Configuration{settings, Installation::at(installed()), "1.0", "2.36", launch,
                                    [this] { ++terminations; }},
        LinuxUpdater::Doors{queue, system, defaults}, userDriver, delegate);
  }
  // A check that the user asks for, until its session ends or the application is to end.
  void check() {
    if (!updater) make(queue_);
    updater->checkForUpdates();
    const int before = terminations;
    ASSERT_TRUE(waitUntil([&] { return !updater->sessionInProgress() || terminations > before; }));
  }
  std::string error() const {
    for (const auto& each : userDriver.shown) {
      if (each.starts_with("error ")) return each.substr(6);
    }
    return {};
  }

  TemporaryDirectory folder_{"navora-updater"};
  const SigningKey key_ = SigningKey::make();
  std::string feed_;
  LinuxMainQueue queue_;
  EventLog log;
  ReleaseServer server;
  RecordingDriver userDriver;
  CountingDelegate delegate;
  FakeSystem system{log};
  MemoryUserDefaults defaults;
  UpdateLaunch launch;
  int terminations = 0;
  std::unique_ptr<LinuxUpdater> updater;
};

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
  EXPECT_EQ(server.count("/archive-1.1"), 0);
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
  EXPECT_EQ(server.count("/archive-1.1"), 1);
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
  server.put("/archive-1.1", "only the beginning",
             "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(1000) + "\r\n");
  feed_ = {};
  FeedItem item;
  item.version = "1.1";
  item.archiveUrl = "archive-1.1";
  item.archiveLength = 1000;
  item.archiveSignature = key_.sign({});
  server.put("/appcast.xml", *addToFeed("", item));
  check();
  EXPECT_THAT(userDriver.shown, ElementsAre("checking", "found 1.1", "download", "dismissed"));
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterTest, StopsTheCheckWhenItIsCancelled) {
  RawServer silent([](RawServer::Connection& connection) { connection.readRequest(); });
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
  EXPECT_EQ(server.count("/archive-1.1"), 0);
}

TEST_F(LinuxUpdaterTest, TellsTheUserOnlyWhenTheUserHasAsked) {
  server.put("/appcast.xml", "no feed");
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
  EXPECT_EQ(server.count("/appcast.xml"), 1);
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

// A feed or an archive that is not as it should be, and what the log says of it.
class UpdaterFaultTest : public LinuxUpdaterTest {
 protected:
  void expectError(const std::string& expected) {
    check();
    EXPECT_THAT(error(), HasSubstr(expected));
    EXPECT_EQ(userDriver.shown.back(), "dismissed");
    EXPECT_EQ(terminations, 0);
    EXPECT_FALSE(std::filesystem::exists(updateFolder()));
    EXPECT_EQ(Installation::at(installed())->version(), "1.0");
    EXPECT_TRUE(updater->canCheckForUpdates());
  }
};

TEST_F(UpdaterFaultTest, MissingFeed) {
  expectError("feed: The server answered 404");
}

TEST_F(UpdaterFaultTest, FeedThatIsTooLong) {
  server.put("/appcast.xml", std::string(5 * 1024 * 1024, ' '));
  expectError("feed: The feed is too long");
}

TEST_F(UpdaterFaultTest, RedirectedFeed) {
  server.put("/appcast.xml", "",
             "HTTP/1.1 302 Found\r\nLocation: /other.xml\r\nContent-Length: 0\r\n");
  expectError("feed: The server answered 302");
  EXPECT_EQ(server.count("/other.xml"), 0);
}

TEST_F(UpdaterFaultTest, FeedThatBreaksOff) {
  server.put("/appcast.xml", "<rss", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n");
  expectError("feed: ");
}

TEST_F(UpdaterFaultTest, FeedWithAWrongSignature) {
  publish("1.1");
  server.put("/appcast.xml", feed_ + "<!-- sparkle-signatures:\nedSignature: " + key_.sign({}) +
                                 "\nlength: " + std::to_string(feed_.size()) + "\n-->\n");
  expectError("feed: The signature of the feed is not valid");
}

TEST_F(UpdaterFaultTest, ArchiveAtAnInsecureAddress) {
  FeedItem item;
  item.archiveUrl = "http://updates.example/archive";
  publish("1.1", key_, item);
  expectError("download: The archive is not at a secure address");
}

TEST_F(UpdaterFaultTest, MissingArchive) {
  publish("1.1");
  server.put("/archive-1.1", "gone", "HTTP/1.1 410 Gone\r\nContent-Length: 4\r\n");
  expectError("download: The server answered 410");
}

TEST_F(UpdaterFaultTest, ArchiveOfAnotherLength) {
  publish("1.1");
  server.put("/archive-1.1", "short");
  expectError("download: The archive has another length than announced");
}

TEST_F(UpdaterFaultTest, ArchiveThatBreaksOff) {
  const auto archive = publish("1.1");
  server.put("/archive-1.1", archive.substr(0, archive.size() / 2),
             "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(archive.size()) + "\r\n");
  expectError("download: ");
}

TEST_F(UpdaterFaultTest, ArchiveWithoutLengthThatIsTooLong) {
  const auto archive = publish("1.1");
  server.put("/archive-1.1", archive + "more", "HTTP/1.1 200 OK\r\n");
  expectError("download: The archive has another length than announced");
}

TEST_F(UpdaterFaultTest, ArchiveWithOneByteChanged) {
  auto archive = publish("1.1");
  archive[archive.size() / 2] = static_cast<char>(archive[archive.size() / 2] ^ 1);
  server.put("/archive-1.1", archive);
  expectError("verification: The signature of the archive is not valid");
}

TEST_F(UpdaterFaultTest, ArchiveThatSomebodyElseHasSigned) {
  publish("1.1", SigningKey::make());
  expectError("verification: The signature of the archive is not valid");
}

TEST_F(UpdaterFaultTest, OldArchiveUnderANewVersion) {
  const path archive = folder_.path() / "old";
  ASSERT_EQ(writeArchive(built(), "0.9", archive), std::nullopt);
  FeedItem item;
  item.version = "1.1";
  item.archiveUrl = "old";
  item.archiveLength = std::filesystem::file_size(archive);
  item.archiveSignature = *key_.signFile(archive);
  server.put("/old", readFile(archive));
  server.put("/appcast.xml", *addToFeed("", item));
  expectError("verification: The archive holds version 0.9 in place of 1.1");
}

TEST_F(UpdaterFaultTest, NewVersionThatDoesNotRunHere) {
  writeProgram(built() / "bin/navora", "exit 1");
  publish("1.1");
  expectError("verification: The new version does not run on this system");
}

TEST_F(UpdaterFaultTest, InstallerThatIsNotThere) {
  publish("1.1");
  std::filesystem::remove_all(installed() / "libexec");
  expectError("installation: The installer does not start");
}

TEST_F(UpdaterFaultTest, AnotherProgramThatIsUpdating) {
  publish("1.1");
  const auto other = UpdateFolder::claim(*Installation::at(installed()));
  ASSERT_TRUE(other);
  check();
  EXPECT_EQ(error(), "installation: Another program is updating the application");
}

// When the updater looks by itself.
class UpdaterScheduleTest : public LinuxUpdaterTest {
 protected:
  static constexpr auto day = std::chrono::hours(24);

  void start() {
    make(clock);
    EXPECT_EQ(updater->startUpdater(), std::nullopt);
    clock.runDue();
  }
  // How many checks have begun.
  bool checksWithin(std::chrono::milliseconds time) {
    const auto before = defaults.value("navora.updater.lastCheck");
    clock.advance(time);
    return defaults.value("navora.updater.lastCheck") != before;
  }
  void setLastCheck(std::chrono::seconds before) {
    defaults.setValue("navora.updater.lastCheck",
                      secondsSince1970(system.time) - static_cast<double>(before.count()));
  }

  FakeMainQueue clock;
};

TEST_F(UpdaterScheduleTest, LooksSoonAfterItsFirstStart) {
  start();
  EXPECT_FALSE(checksWithin(std::chrono::seconds(4)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(UpdaterScheduleTest, LooksOnceADayAcrossStarts) {
  setLastCheck(std::chrono::hours(20));
  start();
  EXPECT_FALSE(checksWithin(std::chrono::hours(4) - std::chrono::seconds(1)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(UpdaterScheduleTest, WaitsADayAtMostWhenTheClockWasPutBack) {
  setLastCheck(-std::chrono::hours(1000));
  start();
  EXPECT_TRUE(checksWithin(day));
}

TEST_F(UpdaterScheduleTest, DoesNothingBetweenChecks) {
  setLastCheck(std::chrono::hours(0));
  start();
  EXPECT_EQ(clock.pendingCount(), 1U);
}

TEST_F(UpdaterScheduleTest, NeverLooksByItselfWhereSomebodyElseInstalls) {
  std::filesystem::remove(installed() / Installation::recordName);
  start();
  EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(UpdaterScheduleTest, KeepsTheUsersPlaceInARollout) {
  setLastCheck(std::chrono::hours(0));
  start();
  updater->checkForUpdates();
  const auto group = defaults.value("navora.updater.rolloutGroup");
  ASSERT_TRUE(group);
  EXPECT_GE(group->get<int>(), 0);
  EXPECT_LT(group->get<int>(), 7);
  updater.reset();
  make(clock);
  updater->checkForUpdates();
  EXPECT_EQ(defaults.value("navora.updater.rolloutGroup"), group);
}

}  // namespace
}  // namespace navora
