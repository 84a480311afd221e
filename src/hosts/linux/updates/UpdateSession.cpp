#include "hosts/linux/updates/UpdateSession.h"

#include <atomic>
#include <chrono>
#include <utility>

#include "hosts/linux/installation/FeedSignature.h"
#include "hosts/linux/installation/UpdateAddress.h"
#include "hosts/linux/installation/UpdateError.h"
#include "hosts/linux/installation/UpdatePreparation.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "hosts/linux/updates/InstallerLaunch.h"

namespace navora {
namespace {

using Failure = std::optional<PlatformError>;

constexpr HttpSessionConfiguration feedLimits{
    .requestTimeoutSeconds = 30, .resourceTimeoutSeconds = 60, .maximumBodyBytes = 4 * 1024 * 1024};

PlatformError feedError(const std::string& description) {
  return updateError(UpdateStage::feed, description);
}

// Tells work on another thread that the coroutine that has it as a local variable was destroyed.
class Cancellation {
 public:
  Cancellation() = default;
  ~Cancellation() { *cancelled_ = true; }
  Cancellation(const Cancellation&) = delete;
  Cancellation& operator=(const Cancellation&) = delete;

  std::shared_ptr<const std::atomic<bool>> flag() const { return cancelled_; }

 private:
  const std::shared_ptr<std::atomic<bool>> cancelled_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace

UpdateSession::UpdateSession(Context& context, AppcastSelection::Conditions conditions)
    : context_(context), conditions_(std::move(conditions)) {}

void UpdateSession::start(Completion completion) {
  completion_ = std::move(completion);
  task_ = runAndFinish();
}

Task<> UpdateSession::runAndFinish() {
  auto error = co_await run();
  finish(std::move(error));
}

void UpdateSession::finish(Failure error) {
  // Queued, because it may destroy this session, whose task is still running.
  context_.mainQueue.async(lifetime_.guard([this, error = std::move(error)] {
    const Completion completion = std::exchange(completion_, nullptr);
    if (completion) completion(error);
  }));
}

std::function<void()> UpdateSession::cancellation() {
  return lifetime_.guard([this] {
    task_ = {};
    finish(std::nullopt);
  });
}

Task<Failure> UpdateSession::run() {
  if (conditions_.userInitiated) context_.userDriver.showUserInitiatedUpdateCheck(cancellation());
  const Found found = co_await findUpdate();
  if (!found) {
    // A failed background check leaves the user nothing to do.
    if (conditions_.userInitiated) co_await reportError(found.error());
    co_return found.error();
  }
  context_.feedRead();
  if (!*found) {
    if (conditions_.userInitiated) co_await reportNothingFound();
    co_return std::nullopt;
  }
  const AppcastEntry& entry = **found;
  const bool isInformational = !canBeInstalled(entry);
  const UserUpdateChoice choice = co_await offer(entry, isInformational);
  if (choice != UserUpdateChoice::install || isInformational) co_return std::nullopt;
  Failure error;
  if (!isPrepared(entry)) error = co_await prepare(entry);
  if (!error) error = co_await install();
  if (error) co_await reportError(*error);
  co_return error;
}

Task<UpdateSession::Found> UpdateSession::findUpdate() {
  if (!context_.settings) co_return std::optional<AppcastEntry>();
  feedSession_ = std::make_unique<LinuxHttpSession>(feedLimits, context_.mainQueue);
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
  // Frees the folder of an older prepared version for this one.
  context_.prepared.reset();
  using Claim = Expected<UpdateFolder, PlatformError>;
  // Queued behind the work of a session that was cancelled while it unpacked: it holds the folder.
  std::function<Claim()> claim = [installation = *context_.installation] {
    return UpdateFolder::claim(installation);
  };
  auto claimed = co_await awaitBackground<Claim>(context_.backgroundQueue, std::move(claim));
  if (!claimed) co_return claimed.error();
  // Shared with the work that unpacks: the folder is removed after both have released it.
  const auto folder = std::make_shared<UpdateFolder>(*std::move(claimed));
  Failure error = co_await download(entry, *folder);
  if (!error) error = co_await unpack(entry, folder);
  if (error) co_return error;
  const bool works = co_await passesSelfTest(*folder);
  if (!works)
    co_return updateError(UpdateStage::verification, "The new version does not run on this system");
  context_.prepared.emplace(PreparedVersion{entry.version, std::move(*folder)});
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
  download_ = std::make_unique<UpdateDownload>(*entry.archive, folder.archive(), progress,
                                               context_.mainQueue);
  auto error = co_await awaitCallback<Failure>(
      [this](Callback<Failure> done) { download_->start(std::move(done)); });
  download_.reset();
  co_return error;
}

Task<Failure> UpdateSession::unpack(const AppcastEntry& entry,
                                    std::shared_ptr<const UpdateFolder> folder) {
  UpdaterUserDriver& userDriver = context_.userDriver;
  userDriver.showDownloadDidStartExtractingUpdate();
  const std::function<void(double)> show = lifetime_.guard(
      [&userDriver](double progress) { userDriver.showExtractionReceivedProgress(progress); });
  const Cancellation cancellation;
  std::function<Failure()> work =
      [folder = std::move(folder), entry, show, key = context_.settings->publicKey,
       cancelled = cancellation.flag(), &mainQueue = context_.mainQueue] {
        const auto progress = [&show, &mainQueue](double value) {
          mainQueue.async([show, value] { show(value); });
        };
        return prepareUpdate(*folder, entry, key, progress, *cancelled);
      };
  co_return co_await awaitBackground<Failure>(context_.backgroundQueue, std::move(work));
}

Task<bool> UpdateSession::passesSelfTest(const UpdateFolder& folder) {
  const auto program = Installation::executableIn(folder.version());
  const bool passed = co_await awaitCallback<bool>([this, &program](Callback<bool> done) {
    programCheck_ = std::make_unique<ProgramCheck>(program, context_.mainQueue, std::move(done));
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
  // Never resumed: the session ends with the application.
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

Task<> UpdateSession::reportNothingFound() {
  const PlatformError error = feedError("There is no newer version");
  co_await awaitCallback<void>([this, &error](Callback<void> done) {
    context_.userDriver.showUpdateNotFound(error, std::move(done));
  });
}

Task<> UpdateSession::reportError(PlatformError error) {
  co_await awaitCallback<void>([this, &error](Callback<void> done) {
    context_.userDriver.showUpdaterError(error, std::move(done));
  });
}

}  // namespace navora
