#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "fakes/EventLog.h"
#include "fakes/FakeObservers.h"
#include "platform/Updater.h"

namespace navora {

// An updater that does nothing by itself: the test calls its user driver.
class FakeUpdater final : public Updater {
 public:
  // The updater's state; separate from the updater, which its controller owns.
  struct Session {
    explicit Session(EventLog& eventLog) : log(eventLog) {}

    EventLog& log;
    // Null until an updater is created.
    UpdaterUserDriver* driver = nullptr;
    UpdaterDelegate* delegate = nullptr;
    std::optional<PlatformError> startError;
    bool canCheck = true;
    bool inProgress = false;
    FakeObservers canCheckObservers;
    FakeObservers inProgressObservers;

    void begin() {
      inProgress = true;
      inProgressObservers.notify();
    }
    void end() {
      inProgress = false;
      inProgressObservers.notify();
    }
    void setCanCheck(bool can) {
      canCheck = can;
      canCheckObservers.notify();
    }
  };

  FakeUpdater(Session& session, UpdaterUserDriver& driver, UpdaterDelegate& delegate)
      : session_(session) {
    session_.log.record("updater.make");
    session_.driver = &driver;
    session_.delegate = &delegate;
  }

  std::optional<PlatformError> startUpdater() override {
    session_.log.record("updater.start");
    return session_.startError;
  }
  void checkForUpdates() override { session_.log.record("updater.check"); }
  void checkForUpdatesInBackground() override { session_.log.record("updater.checkInBackground"); }
  bool canCheckForUpdates() const override { return session_.canCheck; }
  bool sessionInProgress() const override { return session_.inProgress; }
  std::unique_ptr<ObserverToken> observeCanCheckForUpdates(
      std::function<void()> callback) override {
    session_.log.record("updater.observeCanCheck");
    return session_.canCheckObservers.add(std::move(callback));
  }
  std::unique_ptr<ObserverToken> observeSessionInProgress(std::function<void()> callback) override {
    session_.log.record("updater.observeInProgress");
    return session_.inProgressObservers.add(std::move(callback));
  }

 private:
  Session& session_;
};

}  // namespace navora
