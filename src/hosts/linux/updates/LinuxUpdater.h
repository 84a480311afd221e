#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "hosts/linux/updates/UpdateLaunch.h"
#include "hosts/linux/updates/UpdateSession.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "support/Lifetime.h"

namespace navora {

// Looks for new versions in the feed once a day, as long as this program is an installation of its
// own, and whenever it is asked to; one session at a time.
class LinuxUpdater final : public Updater {
 public:
  struct Configuration {
    std::optional<UpdateSettings> settings;
    std::optional<Installation> installation;
    std::string currentVersion;
    // Of the C library.
    std::string systemVersion;
    UpdateLaunch& launch;
    // Ends the application.
    std::function<void()> terminate;
  };
  struct Dependencies {
    MainQueue& mainQueue;
    System& system;
    UserDefaults& userDefaults;
  };

  // Everything must outlive this object.
  LinuxUpdater(Configuration configuration, const Dependencies& dependencies,
               UpdaterUserDriver& userDriver, UpdaterDelegate& delegate);
  ~LinuxUpdater() override;

  std::optional<PlatformError> startUpdater() override;
  void checkForUpdates() override;
  void checkForUpdatesInBackground() override;
  bool canCheckForUpdates() const override { return !session_; }
  bool sessionInProgress() const override { return session_ != nullptr; }
  std::unique_ptr<ObserverToken> observeCanCheckForUpdates(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeSessionInProgress(std::function<void()> callback) override;

 private:
  class Observation;
  using Observers = std::list<std::function<void()>>;

  void reportLaunch();
  void scheduleCheck();
  void check(bool userInitiated);
  void sessionEnded(const std::optional<PlatformError>& error);
  int rolloutGroup();
  void tellObservers() const;

  const Configuration configuration_;
  const Dependencies dependencies_;
  UpdaterUserDriver& userDriver_;
  UpdaterDelegate& delegate_;
  UpdateSession::Context context_;
  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
  std::unique_ptr<UpdateSession> session_;
  std::unique_ptr<ObserverToken> timer_;
  Lifetime lifetime_;
};

}  // namespace navora
