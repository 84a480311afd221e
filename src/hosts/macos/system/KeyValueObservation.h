#pragma once

#include <functional>
#include <memory>

#import <Foundation/Foundation.h>

#include "platform/ObserverToken.h"

namespace navora {

// Calls back on the main thread, a turn of the main queue after the property has changed on any
// thread, as long as the token is kept. The token keeps the object. Main thread only.
std::unique_ptr<ObserverToken> observeKeyPath(NSObject* _Nonnull object, NSString* _Nonnull keyPath,
                                              std::function<void()> callback);

}  // namespace navora
