#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface SUAppcastItem : NSObject
@property(copy, nonatomic, readonly) NSString* versionString;
@property(copy, nonatomic, readonly) NSString* displayVersionString;
@property(nullable, copy, nonatomic, readonly) NSURL* infoURL;
@property(getter=isInformationOnlyUpdate, nonatomic, readonly) BOOL informationOnlyUpdate;
@end

NS_ASSUME_NONNULL_END
