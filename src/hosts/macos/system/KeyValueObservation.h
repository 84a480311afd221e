#pragma once

#include <functional>
#include <memory>

#import <Foundation/Foundation.h>

#include "platform/ObserverToken.h"

namespace navora {

// Calls `callback` after every change of the property, until the token is destroyed. The property
// may change on any thread; the callback runs on the main thread, one turn of the main queue later.
// The token retains `object`. To be called, and the token to be destroyed, on the main thread.
std::unique_ptr<ObserverToken> observeKeyPath(NSObject* _Nonnull object, NSString* _Nonnull keyPath,
                                              std::function<void()> callback);

}  // namespace navora
