#pragma once

#import <Sparkle/SPUUserDriver.h>

NS_ASSUME_NONNULL_BEGIN

@class SPUUpdater;

typedef NS_ENUM(NSInteger, SPUUpdateCheck) {
  SPUUpdateCheckUpdates = 0,
  SPUUpdateCheckUpdatesInBackground = 1,
  SPUUpdateCheckUpdateInformation = 2,
};

@protocol SPUUpdaterDelegate <NSObject>
@optional
- (void)updater:(SPUUpdater*)updater
    didFinishUpdateCycleForUpdateCheck:(SPUUpdateCheck)updateCheck
                                 error:(nullable NSError*)error;
@end

@interface SPUUpdater : NSObject
// Retains the user driver and holds the delegate weakly.
- (instancetype)initWithHostBundle:(NSBundle*)hostBundle
                 applicationBundle:(NSBundle*)applicationBundle
                        userDriver:(id<SPUUserDriver>)userDriver
                          delegate:(nullable id<SPUUpdaterDelegate>)delegate;
- (BOOL)startUpdater:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (void)checkForUpdates;
- (void)checkForUpdatesInBackground;
// Both support key-value observing.
@property(nonatomic, readonly) BOOL canCheckForUpdates;
@property(nonatomic, readonly) BOOL sessionInProgress;
@end

NS_ASSUME_NONNULL_END
