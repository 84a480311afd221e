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
#include "hosts/linux/updates/Worker.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"
#include "platform/Updater.h"
#include "support/Expected.h"
#include "support/Lifetime.h"
#include "support/Task.h"

namespace navora {

// A version that has been fetched, verified and unpacked, and waits for its installation.
struct PreparedVersion {
  std::string version;
  UpdateFolder folder;
};

// One check for updates and everything that follows from it, up to the end of the application.
class UpdateSession {
 public:
  struct Context {
    // None if this build has no feed.
    std::optional<UpdateSettings> settings;
    // None if this program is no installation of its own; then releases can only be read about.
    std::optional<Installation> installation;
    UpdaterUserDriver& userDriver;
    MainQueue& mainQueue;
    // Ends the application.
    std::function<void()> terminate;
    // Kept between sessions, so that nothing is fetched twice.
    std::optional<PreparedVersion> prepared;
  };
  using Completion = std::function<void(std::optional<PlatformError>)>;

  // The context must outlive the session.
  UpdateSession(Context& context, AppcastSelection::Conditions conditions);
  UpdateSession(const UpdateSession&) = delete;
  UpdateSession& operator=(const UpdateSession&) = delete;

  // The completion comes once, perhaps at once; it may destroy the session.
  void start(Completion completion);

 private:
  using Found = Expected<std::optional<AppcastEntry>, PlatformError>;

  Task<> run();
  Task<std::optional<PlatformError>> follow();
  Task<Found> findUpdate();
  Found select(const HttpSession::Result& feed) const;
  Task<UserUpdateChoice> offer(const AppcastEntry& entry, bool isInformational);
  Task<std::optional<PlatformError>> prepare(AppcastEntry entry);
  Task<std::optional<PlatformError>> download(const AppcastEntry& entry,
                                              const UpdateFolder& folder);
  Task<std::optional<PlatformError>> unpack(const AppcastEntry& entry, const UpdateFolder& folder);
  Task<bool> starts(const UpdateFolder& folder);
  Task<std::optional<PlatformError>> install();
  void terminateApplication();

  Task<> tellNothingFound();
  Task<> tell(PlatformError error);
  // Walks through the folder of the installation.
  bool canBeInstalled(const AppcastEntry& entry) const;
  bool isPrepared(const AppcastEntry& entry) const;
  std::function<void()> cancellation();
  void end(std::optional<PlatformError> error);

  Context& context_;
  const AppcastSelection::Conditions conditions_;
  Completion completion_;
  // What works for the task is below it, so that it ends before what it works on.
  Task<> task_;
  std::unique_ptr<HttpSession> feedSession_;
  std::unique_ptr<UpdateDownload> download_;
  std::unique_ptr<Worker> worker_;
  std::unique_ptr<ProgramCheck> programCheck_;
  std::unique_ptr<ObserverToken> termination_;
  Lifetime lifetime_;
};

}  // namespace navora
