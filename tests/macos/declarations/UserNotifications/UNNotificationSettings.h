#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// One more member exists, for app clips, which this system does not have.
typedef NS_ENUM(NSInteger, UNAuthorizationStatus) {
  UNAuthorizationStatusNotDetermined = 0,
  UNAuthorizationStatusDenied = 1,
  UNAuthorizationStatusAuthorized = 2,
  UNAuthorizationStatusProvisional = 3,
};

@interface UNNotificationSettings : NSObject <NSCopying>
@property(readonly) UNAuthorizationStatus authorizationStatus;
@end

NS_ASSUME_NONNULL_END
