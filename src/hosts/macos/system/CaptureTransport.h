#pragma once

#import <Foundation/Foundation.h>

#include "platform/HttpSession.h"

NS_ASSUME_NONNULL_BEGIN

// The delegate of a session: refuses every redirect, reads the answers, and stops reading those
// that are too long. Lives on the main thread.
@interface CaptureTransport : NSObject <NSURLSessionDataDelegate>
- (instancetype)initWithMaximumBodyBytes:(std::size_t)maximumBodyBytes;
// The completion is called once, unless `forgetAll` comes first.
- (void)expectTask:(NSURLSessionTask*)task completion:(navora::HttpSession::Completion)completion;
- (void)forgetAll;
@end

NS_ASSUME_NONNULL_END
