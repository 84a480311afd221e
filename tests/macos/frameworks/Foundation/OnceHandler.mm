#include "frameworks/Foundation/OnceHandler.h"

#include "runtime/Runtime.h"

@implementation NavoraOnceHandler

- (void)call {
  if (self.called) navora::objc::fail("a completion handler was called twice");
  self.called = YES;
}

- (void)dealloc {
  if (!self.called) navora::objc::fail("a completion handler was not called");
}

@end
