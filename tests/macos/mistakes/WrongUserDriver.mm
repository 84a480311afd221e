// Delegates, user drivers and answers of a type that the updater does not accept.

// clang-format off: expected messages stay on one line.

#import <Sparkle/Sparkle.h>

#include "platform/Updater.h"

@interface UpdaterDelegateWithWrongArguments : NSObject <SPUUpdaterDelegate>
@end

@implementation UpdaterDelegateWithWrongArguments
- (void)updater:(SPUUpdater*)updater
    didFinishUpdateCycleForUpdateCheck:(NSString*)updateCheck
                                 error:(nullable NSError*)error {
  // expected-error@-2 {{conflicting parameter types in implementation of 'updater:didFinishUpdateCycleForUpdateCheck:error:'}}
  // expected-note@Sparkle/SPUUpdater.h:* {{previous definition is here}}
}
@end

void answerWrongly(NSBundle* bundle, NSObject* object, void (^reply)(SPUUserUpdateChoice)) {
  (void)[[SPUUpdater alloc] initWithHostBundle:bundle applicationBundle:bundle userDriver:object delegate:nil];
  // expected-error@-1 {{incompatible pointer types sending 'NSObject *' to parameter of type 'id<SPUUserDriver> _Nonnull'}}
  reply(navora::UserUpdateChoice::install);
  // expected-error@-1 {{cannot initialize a parameter of type 'SPUUserUpdateChoice'}}
}
