#include "hosts/linux/updates/UpdateSession.h"

#include <chrono>
#include <utility>

#include "hosts/linux/installation/FeedSignature.h"
#include "hosts/linux/installation/UpdateAddress.h"
#include "hosts/linux/installation/UpdateError.h"
#include "hosts/linux/installation/UpdatePreparation.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "hosts/linux/updates/InstallerLaunch.h"

namespace navora {
namespace {

using Failure = std::optional<PlatformError>;

constexpr HttpSessionConfiguration feedLimits{
    .requestTimeoutSeconds = 30, .resourceTimeoutSeconds = 60, .maximumBodyBytes = 4 * 1024 * 1024};

PlatformError feedError(const std::string& description) {
  return updateError(UpdateStage::feed, description);
}

}  // namespace

UpdateSession::UpdateSession(Context& context, AppcastSelection::Conditions conditions)
    : context_(context), conditions_(std::move(conditions)) {}

void UpdateSession::start(Completion completion) {
  completion_ = std::move(completion);
  task_ = run();
}

Task<> UpdateSession::run() {
  auto error = co_await follow();
  end(std::move(error));
}

void UpdateSession::end(Failure error) {
  // Later, because it may destroy this session, whose task is still under way.
  context_.mainQueue.async(lifetime_.guard([this, error = std::move(error)] {
    const Completion completion = std::exchange(completion_, nullptr);
    if (completion) completion(error);
  }));
}

std::function<void()> UpdateSession::cancellation() {
  return lifetime_.guard([this] {
    worker_.reset();
    task_ = {};
    end(std::nullopt);
  });
}

Task<Failure> UpdateSession::follow() {
  if (conditions_.userInitiated) context_.userDriver.showUserInitiatedUpdateCheck(cancellation());
  const Found found = co_await findUpdate();
  if (!found) {
    // Of what happens in the background the user hears only what they can act on.
    if (conditions_.userInitiated) co_await tell(found.error());
    co_return found.error();
  }
  if (!*found) {
    if (conditions_.userInitiated) co_await tellNothingFound();
    co_return std::nullopt;
  }
  const AppcastEntry& entry = **found;
  const bool isInformational = !canBeInstalled(entry);
  const UserUpdateChoice choice = co_await offer(entry, isInformational);
  if (choice != UserUpdateChoice::install || isInformational) co_return std::nullopt;
  Failure error;
  if (!isPrepared(entry)) error = co_await prepare(entry);
  if (!error) error = co_await install();
  if (error) co_await tell(*error);
  co_return error;
}

Task<UpdateSession::Found> UpdateSession::findUpdate() {
  if (!context_.settings) co_return std::optional<AppcastEntry>();
  feedSession_ = std::make_unique<LinuxHttpSession>(feedLimits);
  const HttpRequest request{context_.settings->feed};
  const auto feed = co_await awaitCallback<HttpSession::Result>(
      [this, &request](Callback<HttpSession::Result> done) {
        feedSession_->send(request, std::move(done));
      });
  co_return select(feed);
}

UpdateSession::Found UpdateSession::select(const HttpSession::Result& feed) const {
  constexpr int ok = 200;
  if (!feed) return Unexpected(feedError(feed.error().localizedDescription));
  if (feed->status != ok)
    return Unexpected(feedError("The server answered " + std::to_string(feed->status)));
  if (feed->bodyTooLarge) return Unexpected(feedError("The feed is too long"));
  const FeedSignature signature = checkFeedSignature(feed->body, context_.settings->publicKey);
  const bool mustBeSigned = context_.settings->feedMustBeSigned;
  if (signature == FeedSignature::invalid || (signature == FeedSignature::missing && mustBeSigned))
    return Unexpected(feedError("The signature of the feed is not valid"));
  const auto entries = readAppcast(feed->body, context_.settings->feed);
  if (!entries) return Unexpected(feedError(entries.error()));
  return AppcastSelection::choose(*entries, conditions_);
}

bool UpdateSession::canBeInstalled(const AppcastEntry& entry) const {
  return context_.installation && context_.installation->isReplaceable() &&
         !AppcastSelection::isInformational(entry, conditions_.currentVersion);
}

bool UpdateSession::isPrepared(const AppcastEntry& entry) const {
  return context_.prepared && context_.prepared->version == entry.version;
}

Task<UserUpdateChoice> UpdateSession::offer(const AppcastEntry& entry, bool isInformational) {
  using Stage = UserUpdateState::Stage;
  const AppcastItem item{entry.version, entry.displayVersion, entry.link, isInformational};
  const UserUpdateState state{isPrepared(entry) ? Stage::downloaded : Stage::notDownloaded,
                              conditions_.userInitiated};
  co_return co_await awaitCallback<UserUpdateChoice>(
      [this, &item, &state](Callback<UserUpdateChoice> reply) {
        context_.userDriver.showUpdateFound(item, state, std::move(reply));
      });
}

Task<Failure> UpdateSession::prepare(AppcastEntry entry) {
  // The folder of a version that has been overtaken is needed for this one.
  context_.prepared.reset();
  auto folder = UpdateFolder::claim(*context_.installation);
  if (!folder) co_return folder.error();
  Failure error = co_await download(entry, *folder);
  if (!error) error = co_await unpack(entry, *folder);
  if (error) co_return error;
  const bool works = co_await starts(*folder);
  if (!works)
    co_return updateError(UpdateStage::verification, "The new version does not run on this system");
  context_.prepared.emplace(PreparedVersion{entry.version, *std::move(folder)});
  co_return std::nullopt;
}

Task<Failure> UpdateSession::download(const AppcastEntry& entry, const UpdateFolder& folder) {
  UpdaterUserDriver& userDriver = context_.userDriver;
  userDriver.showDownloadInitiated(cancellation());
  if (!isUpdateAddress(entry.archive->url))
    co_return updateError(UpdateStage::download, "The archive is not at a secure address");
  UpdateDownload::Progress progress;
  progress.expected = [&userDriver](std::uint64_t length) {
    userDriver.showDownloadDidReceiveExpectedContentLength(length);
  };
  progress.received = [&userDriver](std::uint64_t length) {
    userDriver.showDownloadDidReceiveData(length);
  };
  download_ = std::make_unique<UpdateDownload>(*entry.archive, folder.archive(), progress);
  auto error = co_await awaitCallback<Failure>(
      [this](Callback<Failure> done) { download_->start(std::move(done)); });
  download_.reset();
  co_return error;
}

Task<Failure> UpdateSession::unpack(const AppcastEntry& entry, const UpdateFolder& folder) {
  UpdaterUserDriver& userDriver = context_.userDriver;
  userDriver.showDownloadDidStartExtractingUpdate();
  const std::function<void(double)> show = lifetime_.guard(
      [&userDriver](double progress) { userDriver.showExtractionReceivedProgress(progress); });
  const Worker::Work work = [&entry, &folder, key = context_.settings->publicKey,
                             show](const std::atomic<bool>& cancelled) {
    const auto progress = [&show](double value) {
      LinuxMainQueue().async([show, value] { show(value); });
    };
    return prepareUpdate(folder, entry, key, progress, cancelled);
  };
  auto error = co_await awaitCallback<Failure>([this, &work](Callback<Failure> done) {
    worker_ = std::make_unique<Worker>(work, std::move(done));
  });
  worker_.reset();
  co_return error;
}

Task<bool> UpdateSession::starts(const UpdateFolder& folder) {
  const auto program = Installation::executableIn(folder.version());
  const bool passed = co_await awaitCallback<bool>([this, &program](Callback<bool> done) {
    programCheck_ = std::make_unique<ProgramCheck>(program, std::move(done));
  });
  programCheck_.reset();
  co_return passed;
}

Task<Failure> UpdateSession::install() {
  const auto choice =
      co_await awaitCallback<UserUpdateChoice>([this](Callback<UserUpdateChoice> reply) {
        context_.userDriver.showReadyToInstallAndRelaunch(std::move(reply));
      });
  if (choice != UserUpdateChoice::install) co_return std::nullopt;
  auto folder = std::move(context_.prepared->folder);
  context_.prepared.reset();
  auto error = launchInstaller(*context_.installation, std::move(folder));
  if (error) co_return error;
  // From here on, only the end of the application is to come.
  co_await awaitCallback<void>([this](const Callback<void>&) { terminateApplication(); });
  co_return std::nullopt;
}

void UpdateSession::terminateApplication() {
  constexpr std::chrono::seconds patience{3};
  context_.mainQueue.async(context_.terminate);
  termination_ = context_.mainQueue.after(patience, [this] {
    context_.userDriver.showInstallingUpdate(false,
                                             lifetime_.guard([this] { terminateApplication(); }));
  });
}

Task<> UpdateSession::tellNothingFound() {
  const PlatformError error = feedError("There is no newer version");
  co_await awaitCallback<void>([this, &error](Callback<void> done) {
    context_.userDriver.showUpdateNotFound(error, std::move(done));
  });
}

Task<> UpdateSession::tell(PlatformError error) {
  co_await awaitCallback<void>([this, &error](Callback<void> done) {
    context_.userDriver.showUpdaterError(error, std::move(done));
  });
}

}  // namespace navora
