#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/ObserverToken.h"
#include "platform/PlatformError.h"
#include "support/Url.h"

namespace navora {

// A release that the update feed offers.
struct AppcastItem {
  // What tells releases apart, and what people read.
  std::string versionString;
  std::string displayVersionString;
  std::optional<Url> infoUrl;
  // It cannot be installed from here; there is only a page about it.
  bool isInformationOnlyUpdate = false;

  bool operator==(const AppcastItem&) const = default;
};

struct UserUpdateState {
  enum class Stage { notDownloaded, downloaded, installing };

  Stage stage = Stage::notDownloaded;
  // The user asked for the check that found the update.
  bool userInitiated = false;

  bool operator==(const UserUpdateState&) const = default;
};

enum class UserUpdateChoice { skip, install, dismiss };

struct UpdatePermissionResponse {
  bool automaticUpdateChecks = false;
  bool automaticUpdateDownloading = false;
  bool sendSystemProfile = false;

  bool operator==(const UpdatePermissionResponse&) const = default;
};

// What an updater shows of an update session, step by step, on the main thread. Callbacks that it
// hands over are for the same thread, and stay callable whatever became of the session. A host
// whose updater also reports release notes drops them: none are shown.
class UpdaterUserDriver {
 public:
  using Choose = std::function<void(UserUpdateChoice)>;

  virtual ~UpdaterUserDriver() = default;

  virtual void showUpdatePermissionRequest(std::function<void(UpdatePermissionResponse)> reply) = 0;
  virtual void showUserInitiatedUpdateCheck(std::function<void()> cancellation) = 0;
  virtual void showUpdateFound(const AppcastItem& item, UserUpdateState state, Choose reply) = 0;
  virtual void showUpdateNotFound(const PlatformError& error,
                                  std::function<void()> acknowledgement) = 0;
  virtual void showUpdaterError(const PlatformError& error,
                                std::function<void()> acknowledgement) = 0;

  virtual void showDownloadInitiated(std::function<void()> cancellation) = 0;
  // In bytes; 0 if it is not known. May come again with a better number.
  virtual void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) = 0;
  // Bytes since the last call.
  virtual void showDownloadDidReceiveData(std::uint64_t length) = 0;
  virtual void showDownloadDidStartExtractingUpdate() = 0;
  // From 0 to 1.
  virtual void showExtractionReceivedProgress(double progress) = 0;

  virtual void showReadyToInstallAndRelaunch(Choose reply) = 0;
  // `retryTerminatingApplication` asks the application to end once more.
  virtual void showInstallingUpdate(bool applicationTerminated,
                                    std::function<void()> retryTerminatingApplication) = 0;
  virtual void showUpdateInstalledAndRelaunched(bool relaunched,
                                                std::function<void()> acknowledgement) = 0;
  // The session is over, however it went.
  virtual void dismissUpdateInstallation() = 0;
  // The user asked for updates while one is being shown.
  virtual void showUpdateInFocus() = 0;
};

class UpdaterDelegate {
 public:
  virtual ~UpdaterDelegate() = default;
  // A check and all that followed from it is over.
  virtual void didFinishUpdateCycle(const std::optional<PlatformError>& error) = 0;
};

// Finds, fetches and installs new versions of the application. It shows nothing itself: that is its
// user driver's, which together with the delegate is given when it is made and outlives it. Main
// thread only.
class Updater {
 public:
  virtual ~Updater() = default;

  // To be called once, before anything else. Checks in the background from then on, whenever one is
  // due. Why it cannot work, if it cannot.
  virtual std::optional<PlatformError> startUpdater() = 0;

  // The user asks; the user driver shows whatever comes of it.
  virtual void checkForUpdates() = 0;
  // The user driver hears only of an update that is there.
  virtual void checkForUpdatesInBackground() = 0;

  virtual bool canCheckForUpdates() const = 0;
  virtual bool sessionInProgress() const = 0;
  // The callback comes on the main thread after every change, perhaps from within it, as long as
  // the token is kept.
  virtual std::unique_ptr<ObserverToken> observeCanCheckForUpdates(
      std::function<void()> callback) = 0;
  virtual std::unique_ptr<ObserverToken> observeSessionInProgress(
      std::function<void()> callback) = 0;
};

}  // namespace navora
