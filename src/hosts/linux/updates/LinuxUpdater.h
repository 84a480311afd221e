#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "hosts/linux/updates/UpdateLaunch.h"
#include "hosts/linux/updates/UpdateSession.h"
#include "platform/BackgroundQueue.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "support/Date.h"
#include "support/Lifetime.h"

namespace navora {

// Checks the feed on request and, if the running program belongs to an Installation, once a day by
// the clock, also across sleep and while a session stays open for longer. A check that failed is
// repeated earlier. One session at a time.
class LinuxUpdater final : public Updater {
 public:
  struct Configuration {
    std::optional<UpdateSettings> settings;
    std::optional<Installation> installation;
    std::string currentVersion;
    // Version of the C library.
    std::string systemVersion;
    UpdateLaunch& launch;
    // Asks the application to quit.
    std::function<void()> terminate;
  };
  // The platform interfaces that the updater uses.
  struct Dependencies {
    MainQueue& mainQueue;
    // Work on it may take minutes.
    BackgroundQueue& backgroundQueue;
    System& system;
    UserDefaults& userDefaults;
  };

  // Everything passed by reference must outlive the updater.
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
  // In the order of their registration.
  using Observers = std::map<int, std::function<void()>>;

  void reportLaunch();
  // Returns the seconds until the next check on the updater's own account, not positive if it is
  // due.
  double secondsUntilCheck() const;
  // Sets the timer for the next check, or for the next look at the clock. To be called when either
  // may have changed.
  void scheduleCheck();
  void timerFired();
  void check(bool userInitiated);
  void feedRead();
  void sessionEnded(const std::optional<PlatformError>& error);
  int rolloutGroup();
  void notifyObservers() const;

  const Configuration configuration_;
  const Dependencies dependencies_;
  UpdaterUserDriver& userDriver_;
  UpdaterDelegate& delegate_;
  UpdateSession::Context context_;
  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
  int lastObserver_ = 0;
  std::unique_ptr<UpdateSession> session_;
  // The session's check has succeeded.
  bool feedWasRead_ = false;
  // Number of checks that have failed since one succeeded.
  int failures_ = 0;
  // When a failed check is repeated.
  std::optional<Date> retry_;
  std::unique_ptr<ObserverToken> timer_;
  std::unique_ptr<ObserverToken> wakeObservation_;
  Lifetime lifetime_;
};

}  // namespace navora
