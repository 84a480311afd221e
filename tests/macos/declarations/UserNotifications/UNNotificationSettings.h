#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

// Without UNAuthorizationStatusEphemeral, which exists on iOS only.
typedef NS_ENUM(NSInteger, UNAuthorizationStatus) {
  UNAuthorizationStatusNotDetermined = 0,
  UNAuthorizationStatusDenied = 1,
  UNAuthorizationStatusAuthorized = 2,
  UNAuthorizationStatusProvisional = 3,
};

@interface UNNotificationSettings : NSObject <NSCopying>
@property(readonly) UNAuthorizationStatus authorizationStatus;
@end

// See Apple developer documentation, UNError.
FOUNDATION_EXPORT NSErrorDomain const UNErrorDomain;

NS_ASSUME_NONNULL_END
