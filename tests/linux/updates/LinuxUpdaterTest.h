#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/FakeSystem.h"
#include "fakes/TestUrl.h"
#include "hosts/linux/system/LinuxBackgroundQueue.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "hosts/linux/updates/LinuxUpdater.h"
#include "linux/support/MainLoop.h"
#include "make-update/ArchiveWriter.h"
#include "make-update/Feed.h"
#include "make-update/SigningKey.h"
#include "platform/MemoryUserDefaults.h"
#include "tests/support/Files.h"
#include "tests/support/HttpServer.h"

namespace navora {

// Agrees to everything and records what it was shown.
class RecordingDriver final : public UpdaterUserDriver {
 public:
  std::vector<std::string> shown;
  std::vector<AppcastItem> items;
  std::vector<UserUpdateState> states;
  UserUpdateChoice whenFound = UserUpdateChoice::install;
  // Leaves an offer unanswered, with `answer` to answer it later.
  bool waitsWhenFound = false;
  Choose answer;
  UserUpdateChoice whenReady = UserUpdateChoice::install;
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
    if (waitsWhenFound) {
      answer = std::move(reply);
    } else {
      reply(whenFound);
    }
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

class LinuxUpdaterTest : public testing::Test {
 protected:
  LinuxUpdaterTest() { makeInstallation(); }

  // Makes an installation whose programs are shell scripts. Its installer logs its arguments.
  void makeInstallation() {
    writeProgram(built() / "bin/navora", "exit 0");
    writeProgram(built() / "libexec/navora/navora-install-update",
                 "echo \"$@\" > '" + installerCall().string() + "'");
    std::filesystem::create_directories(installed().parent_path());
    std::filesystem::copy(built(), installed(), std::filesystem::copy_options::recursive);
    writeFile(installed() / Installation::recordName, Installation::record("1.0"));
  }
  static void writeProgram(const std::filesystem::path& file, const std::string& script) {
    writeFile(file, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms(0755));
  }

  std::filesystem::path built() const { return folder_.path() / "built"; }
  std::filesystem::path installed() const { return folder_.path() / "apps/navora"; }
  std::filesystem::path updateFolder() const { return folder_.path() / "apps/.navora.update"; }
  std::filesystem::path installerCall() const { return folder_.path() / "installer-call"; }

  // Adds a release of built() to the feed. Returns the archive's bytes.
  std::string publish(const std::string& version, const SigningKey& key, FeedItem item = {}) {
    const std::filesystem::path archive = folder_.path() / "archive";
    EXPECT_EQ(writeArchive(built(), version, archive), std::nullopt);
    const std::string content = readFile(archive);
    item.version = version;
    if (item.archiveUrl.empty()) item.archiveUrl = "archive-" + version;
    item.archiveLength = content.size();
    item.archiveSignature = *key.signFile(archive);
    server_.serve("/archive-" + version, {.body = content});
    feed_ = *addToFeed(feed_, item);
    server_.serve("/appcast.xml", {.body = feed_});
    return content;
  }
  std::string publish(const std::string& version) { return publish(version, key_); }

  void make(MainQueue& queue) { make(queue, backgroundQueue_); }
  void make(MainQueue& queue, BackgroundQueue& backgroundQueue) {
    UpdateSettings settings{testUrl(server_.url("/appcast.xml")), *readPublicKey(key_.publicText()),
                            false};
    updater_ = std::make_unique<LinuxUpdater>(
        LinuxUpdater::Configuration{settings, Installation::at(installed()), "1.0", "2.36", launch_,
                                    [this] { ++terminations_; }},
        LinuxUpdater::Dependencies{queue, backgroundQueue, system_, defaults_}, userDriver_,
        delegate_);
  }
  // Runs a check by the user until the session ends or the application is asked to quit.
  void check() {
    if (!updater_) make(queue_);
    updater_->checkForUpdates();
    const int before = terminations_;
    ASSERT_TRUE(
        waitUntil([&] { return !updater_->sessionInProgress() || terminations_ > before; }));
  }
  std::string error() const {
    for (const auto& each : userDriver_.shown) {
      if (each.starts_with("error ")) return each.substr(6);
    }
    return {};
  }

  TemporaryDirectory folder_{"navora-updater"};
  const SigningKey key_ = SigningKey::make();
  std::string feed_;
  LinuxMainQueue queue_;
  LinuxBackgroundQueue backgroundQueue_{queue_};
  EventLog log_;
  HttpServer server_;
  RecordingDriver userDriver_;
  CountingDelegate delegate_;
  FakeSystem system_{log_};
  MemoryUserDefaults defaults_;
  UpdateLaunch launch_;
  int terminations_ = 0;
  std::unique_ptr<LinuxUpdater> updater_;
};

}  // namespace navora
