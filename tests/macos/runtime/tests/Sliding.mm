#include "runtime/tests/Sliding.h"

#include <string>

@implementation SlidingBase {
  std::string _text;
  long _values[7];
}

- (instancetype)init {
  self = [super init];
  if (self != nil) _text = "set by the base class, and too long for its own storage";
  return self;
}

@end
