// Casts that automatic reference counting forbids.

// clang-format off: expected messages stay on one line.

#import <Foundation/Foundation.h>

void* keepWithoutOwner(NSObject* object) {
  return (void*)object;
  // expected-error@-1 {{cast of Objective-C pointer type 'NSObject *' to C pointer type 'void *' requires a bridged cast}}
  // expected-note@-2 {{use __bridge}}
  // expected-note@-3 {{use __bridge_retained}}
}

NSObject* adoptWithoutOwner(void* pointer) {
  return (NSObject*)pointer;
  // expected-error@-1 {{cast of C pointer type 'void *' to Objective-C pointer type 'NSObject *' requires a bridged cast}}
  // expected-note@-2 {{use __bridge}}
  // expected-note@-3 {{use __bridge_transfer}}
}
