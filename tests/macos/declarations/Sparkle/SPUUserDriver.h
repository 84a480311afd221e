#pragma once

#import <Foundation/Foundation.h>
#import <Sparkle/SUAppcastItem.h>

NS_ASSUME_NONNULL_BEGIN

@class SPUDownloadData;
@class SPUUpdatePermissionRequest;

typedef NS_ENUM(NSInteger, SPUUserUpdateChoice) {
  SPUUserUpdateChoiceSkip = 0,
  SPUUserUpdateChoiceInstall = 1,
  SPUUserUpdateChoiceDismiss = 2,
};

typedef NS_ENUM(NSInteger, SPUUserUpdateStage) {
  SPUUserUpdateStageNotDownloaded = 0,
  SPUUserUpdateStageDownloaded = 1,
  SPUUserUpdateStageInstalling = 2,
};

@interface SPUUserUpdateState : NSObject
@property(nonatomic, readonly) SPUUserUpdateStage stage;
@property(nonatomic, readonly) BOOL userInitiated;
@end

@interface SUUpdatePermissionResponse : NSObject
// A nil value for automatic downloading keeps the bundle's setting.
- (instancetype)initWithAutomaticUpdateChecks:(BOOL)automaticUpdateChecks
                   automaticUpdateDownloading:(nullable NSNumber*)automaticUpdateDownloading
                            sendSystemProfile:(BOOL)sendSystemProfile;
@end

// Blocks must be called on the main thread, and not after the session has ended.
@protocol SPUUserDriver <NSObject>
- (void)showUpdatePermissionRequest:(SPUUpdatePermissionRequest*)request
                              reply:(void (^)(SUUpdatePermissionResponse* response))reply;
- (void)showUserInitiatedUpdateCheckWithCancellation:(void (^)(void))cancellation;
- (void)showUpdateFoundWithAppcastItem:(SUAppcastItem*)appcastItem
                                 state:(SPUUserUpdateState*)state
                                 reply:(void (^)(SPUUserUpdateChoice choice))reply;
- (void)showUpdateReleaseNotesWithDownloadData:(SPUDownloadData*)downloadData;
- (void)showUpdateReleaseNotesFailedToDownloadWithError:(NSError*)error;
- (void)showUpdateNotFoundWithError:(NSError*)error acknowledgement:(void (^)(void))acknowledgement;
- (void)showUpdaterError:(NSError*)error acknowledgement:(void (^)(void))acknowledgement;
- (void)showDownloadInitiatedWithCancellation:(void (^)(void))cancellation;
- (void)showDownloadDidReceiveExpectedContentLength:(uint64_t)expectedContentLength;
- (void)showDownloadDidReceiveDataOfLength:(uint64_t)length;
- (void)showDownloadDidStartExtractingUpdate;
- (void)showExtractionReceivedProgress:(double)progress;
- (void)showReadyToInstallAndRelaunch:(void (^)(SPUUserUpdateChoice choice))reply;
- (void)showInstallingUpdateWithApplicationTerminated:(BOOL)applicationTerminated
                          retryTerminatingApplication:(void (^)(void))retryTerminatingApplication;
- (void)showUpdateInstalledAndRelaunched:(BOOL)relaunched
                         acknowledgement:(void (^)(void))acknowledgement;
- (void)dismissUpdateInstallation;
@optional
- (void)showUpdateInFocus;
@end

NS_ASSUME_NONNULL_END
