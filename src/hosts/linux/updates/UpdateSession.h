#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/AppcastSelection.h"
#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "hosts/linux/updates/ProgramCheck.h"
#include "hosts/linux/updates/UpdateDownload.h"
#include "hosts/linux/updates/UpdateSettings.h"
#include "platform/BackgroundQueue.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"
#include "platform/Updater.h"
#include "support/Expected.h"
#include "support/Lifetime.h"
#include "support/Task.h"

namespace navora {

// A version that has been downloaded, verified and unpacked, ready to be installed.
struct PreparedVersion {
  std::string version;
  UpdateFolder folder;
};

// One check for updates and all that follows from it, up to the request to quit the application.
// Destroying it cancels what is in progress; the completion is not called.
class UpdateSession {
 public:
  struct Context {
    // std::nullopt if this build has no feed.
    std::optional<UpdateSettings> settings;
    // std::nullopt if the running program belongs to none; releases are then only announced.
    std::optional<Installation> installation;
    UpdaterUserDriver& userDriver;
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    // Asks the application to quit.
    std::function<void()> terminate;
    // Called when the feed has been read, before what was found in it is offered.
    std::function<void()> feedRead;
    // Kept between sessions, so that no version is downloaded twice.
    std::optional<PreparedVersion> prepared;
  };
  using Completion = std::function<void(std::optional<PlatformError>)>;

  // The context must outlive the session.
  UpdateSession(Context& context, AppcastSelection::Conditions conditions);
  UpdateSession(const UpdateSession&) = delete;
  UpdateSession& operator=(const UpdateSession&) = delete;

  // Calls `completion` once, after this function has returned, with the error or std::nullopt. It
  // may destroy the session.
  void start(Completion completion);

 private:
  using Found = Expected<std::optional<AppcastEntry>, PlatformError>;

  Task<> runAndFinish();
  Task<std::optional<PlatformError>> run();
  Task<Found> findUpdate();
  Found select(const HttpSession::Result& feed) const;
  Task<UserUpdateChoice> offer(const AppcastEntry& entry, bool isInformational);
  Task<std::optional<PlatformError>> prepare(AppcastEntry entry);
  Task<std::optional<PlatformError>> download(const AppcastEntry& entry,
                                              const UpdateFolder& folder);
  Task<std::optional<PlatformError>> unpack(const AppcastEntry& entry,
                                            std::shared_ptr<const UpdateFolder> folder);
  Task<bool> passesSelfTest(const UpdateFolder& folder);
  Task<std::optional<PlatformError>> install();
  void terminateApplication();

  Task<> reportNothingFound();
  Task<> reportError(PlatformError error);
  // Reads the installation's whole folder tree.
  bool canBeInstalled(const AppcastEntry& entry) const;
  bool isPrepared(const AppcastEntry& entry) const;
  std::function<void()> cancellation();
  void finish(std::optional<PlatformError> error);

  Context& context_;
  const AppcastSelection::Conditions conditions_;
  Completion completion_;
  // Its callbacks do nothing once it is destroyed, so the objects below, which call them, may
  // outlive it, as they do after a cancellation.
  Task<> task_;
  std::unique_ptr<HttpSession> feedSession_;
  std::unique_ptr<UpdateDownload> download_;
  std::unique_ptr<ProgramCheck> programCheck_;
  std::unique_ptr<ObserverToken> termination_;
  Lifetime lifetime_;
};

}  // namespace navora
