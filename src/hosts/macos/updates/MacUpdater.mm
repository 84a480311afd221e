#include "hosts/macos/updates/MacUpdater.h"

#include <utility>

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/KeyValueObservation.h"
#include "hosts/macos/updates/UserDriverForwarder.h"

@interface NavoraUpdaterForwarder : NSObject <SPUUpdaterDelegate>
@property(nonatomic, nullable) navora::UpdaterDelegate* delegate;
@end

@implementation NavoraUpdaterForwarder

- (void)updater:(SPUUpdater*)updater
    didFinishUpdateCycleForUpdateCheck:(SPUUpdateCheck)updateCheck
                                 error:(nullable NSError*)error {
  if (self.delegate == nullptr) return;
  self.delegate->didFinishUpdateCycle(error == nil ? std::nullopt
                                                   : std::optional(navora::toPlatformError(error)));
}

@end

namespace navora {

namespace {

SPUUpdater* makeUpdater(NavoraUserDriverForwarder* userDriver, NavoraUpdaterForwarder* delegate) {
  NSBundle* bundle = [NSBundle mainBundle];
  return [[SPUUpdater alloc] initWithHostBundle:bundle
                              applicationBundle:bundle
                                     userDriver:userDriver
                                       delegate:delegate];
}

}  // namespace

MacUpdater::MacUpdater(UpdaterUserDriver& userDriver, UpdaterDelegate& delegate)
    : userDriverForwarder_([[NavoraUserDriverForwarder alloc] init]),
      forwarder_([[NavoraUpdaterForwarder alloc] init]),
      updater_(makeUpdater(userDriverForwarder_, forwarder_)) {
  userDriverForwarder_.userDriver = &userDriver;
  forwarder_.delegate = &delegate;
}

MacUpdater::~MacUpdater() {
  userDriverForwarder_.userDriver = nullptr;
  forwarder_.delegate = nullptr;
}

std::optional<PlatformError> MacUpdater::startUpdater() {
  NSError* error = nil;
  if ([updater_ startUpdater:&error]) return std::nullopt;
  return toPlatformError(error);
}

void MacUpdater::checkForUpdates() {
  [updater_ checkForUpdates];
}

void MacUpdater::checkForUpdatesInBackground() {
  [updater_ checkForUpdatesInBackground];
}

bool MacUpdater::canCheckForUpdates() const {
  return updater_.canCheckForUpdates;
}

bool MacUpdater::sessionInProgress() const {
  return updater_.sessionInProgress;
}

std::unique_ptr<ObserverToken> MacUpdater::observeCanCheckForUpdates(
    std::function<void()> callback) {
  return observeKeyPath(updater_, @"canCheckForUpdates", std::move(callback));
}

std::unique_ptr<ObserverToken> MacUpdater::observeSessionInProgress(
    std::function<void()> callback) {
  return observeKeyPath(updater_, @"sessionInProgress", std::move(callback));
}

}  // namespace navora
