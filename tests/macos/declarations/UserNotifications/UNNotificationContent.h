#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class UNNotificationTrigger;

@interface UNNotificationSound : NSObject <NSCopying>
@property(class, readonly, copy) UNNotificationSound* defaultSound;
@end

@interface UNNotificationContent : NSObject <NSCopying>
@property(readonly, copy) NSString* title;
@property(readonly, copy) NSString* body;
@property(nullable, readonly, copy) UNNotificationSound* sound;
// Holds property-list types, chosen by the sender of the notification.
@property(readonly, copy) NSDictionary* userInfo;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString* title;
@property(copy) NSString* body;
@property(nullable, copy) UNNotificationSound* sound;
@property(copy) NSDictionary* userInfo;
@end

@interface UNNotificationRequest : NSObject <NSCopying>
@property(readonly, copy) NSString* identifier;
@property(readonly, copy) UNNotificationContent* content;
// Delivered immediately without a trigger. See Apple developer documentation,
// UNNotificationRequest.
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end

@interface UNNotification : NSObject <NSCopying>
@property(readonly, copy) UNNotificationRequest* request;
@end

@interface UNNotificationResponse : NSObject <NSCopying>
@property(readonly, copy) UNNotification* notification;
@end

NS_ASSUME_NONNULL_END
