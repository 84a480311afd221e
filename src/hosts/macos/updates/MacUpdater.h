#pragma once

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

@class NavoraUpdaterForwarder;
@class NavoraUserDriverForwarder;

namespace navora {

// Sparkle's updater for the application's bundle, whose Info.plist names the feed and the public
// key.
class MacUpdater final : public Updater {
 public:
  MacUpdater(UpdaterUserDriver& userDriver, UpdaterDelegate& delegate);
  ~MacUpdater() override;
  MacUpdater(const MacUpdater&) = delete;
  MacUpdater& operator=(const MacUpdater&) = delete;

  std::optional<PlatformError> startUpdater() override;
  void checkForUpdates() override;
  void checkForUpdatesInBackground() override;
  bool canCheckForUpdates() const override;
  bool sessionInProgress() const override;
  std::unique_ptr<ObserverToken> observeCanCheckForUpdates(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeSessionInProgress(std::function<void()> callback) override;

 private:
  NavoraUserDriverForwarder* _Nonnull userDriverForwarder_;
  NavoraUpdaterForwarder* _Nonnull forwarder_;
  SPUUpdater* _Nonnull updater_;
};

}  // namespace navora
