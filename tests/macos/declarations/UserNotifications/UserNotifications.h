#pragma once

#import <UserNotifications/UNNotificationContent.h>
#import <UserNotifications/UNNotificationSettings.h>
#import <UserNotifications/UNUserNotificationCenter.h>
