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

// A release listed in the update feed.
struct AppcastItem {
  // Identifies the release.
  std::string versionString;
  // Shown to the user.
  std::string displayVersionString;
  std::optional<Url> infoUrl;
  // The release cannot be installed by the updater; `infoUrl` describes it.
  bool isInformationOnlyUpdate = false;

  bool operator==(const AppcastItem&) const = default;
};

struct UserUpdateState {
  enum class Stage { notDownloaded, downloaded, installing };

  Stage stage = Stage::notDownloaded;
  // The update was found by a check that the user requested.
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

// Presents the steps of an update session. Called on the main thread. The callbacks it receives
// must be called on the main thread too, and may be called after the session has ended. Release
// notes are not shown; hosts whose updater reports them ignore them.
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
  // `length` is in bytes, 0 if unknown. May be called again with a corrected length.
  virtual void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) = 0;
  // `length` is the number of bytes received since the last call.
  virtual void showDownloadDidReceiveData(std::uint64_t length) = 0;
  virtual void showDownloadDidStartExtractingUpdate() = 0;
  // `progress` is from 0 to 1.
  virtual void showExtractionReceivedProgress(double progress) = 0;

  virtual void showReadyToInstallAndRelaunch(Choose reply) = 0;
  // `retryTerminatingApplication` asks the application to terminate again.
  virtual void showInstallingUpdate(bool applicationTerminated,
                                    std::function<void()> retryTerminatingApplication) = 0;
  virtual void showUpdateInstalledAndRelaunched(bool relaunched,
                                                std::function<void()> acknowledgement) = 0;
  // The session has ended, with any result.
  virtual void dismissUpdateInstallation() = 0;
  // The user checked for updates while an update is being shown.
  virtual void showUpdateInFocus() = 0;
};

// Called on the main thread.
class UpdaterDelegate {
 public:
  virtual ~UpdaterDelegate() = default;
  // A check, and everything that followed from it, has ended.
  virtual void didFinishUpdateCycle(const std::optional<PlatformError>& error) = 0;
};

// Finds, downloads and installs new versions of the application. It has no user interface of its
// own; the user driver passed at creation presents every step. Main thread only.
class Updater {
 public:
  virtual ~Updater() = default;

  // Starts scheduled background checks. Called once, before any other function. Returns the error
  // if the updater cannot run, otherwise nullopt.
  virtual std::optional<PlatformError> startUpdater() = 0;

  // Checks on the user's request; the user driver shows every result.
  virtual void checkForUpdates() = 0;
  // Checks in the background; the user driver shows only an available update.
  virtual void checkForUpdatesInBackground() = 0;

  virtual bool canCheckForUpdates() const = 0;
  virtual bool sessionInProgress() const = 0;
  // Call `callback` on the main thread after every change, possibly during it, until the token is
  // destroyed.
  virtual std::unique_ptr<ObserverToken> observeCanCheckForUpdates(
      std::function<void()> callback) = 0;
  virtual std::unique_ptr<ObserverToken> observeSessionInProgress(
      std::function<void()> callback) = 0;
};

}  // namespace navora
