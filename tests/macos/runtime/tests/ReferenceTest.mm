// Ownership: reference counts, weak references, pools, blocks and associations.

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#import <Foundation/Foundation.h>

#include "runtime/Runtime.h"

extern "C" void objc_release(id object);

@interface Owned : NSObject
@property(nonatomic, copy) void (^whenDeallocated)(void);
@property(nonatomic, strong) id other;
@property(nonatomic, weak) id observer;
@end

@implementation Owned

- (void)dealloc {
  if (_whenDeallocated != nil) _whenDeallocated();
}

@end

// Refers to itself weakly while it is deallocated.
@interface SelfReferring : NSObject
@end

@implementation SelfReferring

- (void)dealloc {
  SelfReferring* __weak weakSelf = self;
  (void)weakSelf;
}

@end

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Owned* makeOwned(bool& isDeallocated) {
  Owned* owned = [[Owned alloc] init];
  bool* flag = &isDeallocated;
  owned.whenDeallocated = ^{
    *flag = true;
  };
  return owned;
}

TEST(ObjectiveCReferencesTest, TheLastStrongOneKeepsAnObject) {
  bool isDeallocated = false;
  id first = nil;
  @autoreleasepool {
    first = makeOwned(isDeallocated);
  }
  id second = first;
  first = nil;
  EXPECT_FALSE(isDeallocated);
  EXPECT_NE(second, nil);
  second = nil;
  EXPECT_TRUE(isDeallocated);
}

TEST(ObjectiveCReferencesTest, AnObjectReleasesItsProperties) {
  bool isDeallocated = false;
  @autoreleasepool {
    Owned* owner = [[Owned alloc] init];
    owner.other = makeOwned(isDeallocated);
  }
  EXPECT_TRUE(isDeallocated);
}

TEST(ObjectiveCReferencesTest, WeakOnesBecomeNil) {
  id __weak weak = nil;
  id __weak copied = nil;
  Owned* holder = [[Owned alloc] init];
  @autoreleasepool {
    id object = [[NSObject alloc] init];
    weak = object;
    holder.observer = object;
    id __weak other = weak;
    copied = other;
    EXPECT_EQ(weak, object);
    EXPECT_EQ(holder.observer, object);
  }
  EXPECT_EQ(weak, nil);
  EXPECT_EQ(copied, nil);
  EXPECT_EQ(holder.observer, nil);
}

TEST(ObjectiveCReferencesTest, WeakOnesAreNilAlreadyDuringDeallocation) {
  id __weak weak = nil;
  bool wasNil = false;
  bool* flag = &wasNil;
  @autoreleasepool {
    Owned* object = [[Owned alloc] init];
    weak = object;
    id __weak* location = &weak;
    object.whenDeallocated = ^{
      *flag = *location == nil;
    };
  }
  EXPECT_TRUE(wasNil);
}

TEST(ObjectiveCReferencesTest, WeakOnesMayBeReadWhileAnotherThreadReleasesTheLastStrongOne) {
  for (int round = 0; round < 50; ++round) {
    NSObject* object = [[NSObject alloc] init];
    NSObject* __weak weak = object;
    std::atomic<bool> started = false;
    std::thread reader([&] {
      @autoreleasepool {
        started = true;
        while (NSObject* strong = weak) {
          EXPECT_EQ([strong class], [NSObject class]);
        }
      }
    });
    while (!started) {
    }
    object = nil;
    reader.join();
    EXPECT_EQ(weak, nil);
  }
}

TEST(ObjectiveCReferencesTest, CountFromSeveralThreads) {
  bool isDeallocated = false;
  id object = nil;
  @autoreleasepool {
    object = makeOwned(isDeallocated);
  }
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([object] {
      for (int count = 0; count < 1000; ++count) {
        id copy = object;
        [copy class];
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  threads.clear();
  EXPECT_FALSE(isDeallocated);
  object = nil;
  EXPECT_TRUE(isDeallocated);
}

TEST(ObjectiveCReferencesTest, PoolsReleaseWhatWasAutoreleasedInThem) {
  NSObject* __weak inner = nil;
  NSObject* __weak outer = nil;
  @autoreleasepool {
    NSArray* __autoreleasing kept = [NSArray arrayWithObjects:nullptr count:0];
    outer = kept;
    @autoreleasepool {
      NSArray* __autoreleasing dropped = [NSArray arrayWithObjects:nullptr count:0];
      inner = dropped;
    }
    EXPECT_EQ(inner, nil);
    EXPECT_NE(outer, nil);
  }
  EXPECT_EQ(outer, nil);
}

TEST(ObjectiveCReferencesTest, AThreadReleasesAtItsEndWhatItAutoreleasedWithoutAPool) {
  NSObject* __weak weak = nil;
  NSObject* __weak* location = &weak;
  std::thread([location] {
    NSObject* __autoreleasing object = [[NSObject alloc] init];
    *location = object;
  }).join();
  EXPECT_EQ(weak, nil);
}

TEST(ObjectiveCReferencesTest, BlocksOwnWhatTheyCapture) {
  bool isDeallocated = false;
  void (^block)(void) = nil;
  @autoreleasepool {
    id object = makeOwned(isDeallocated);
    block = ^{
      (void)object;
    };
    block();
  }
  EXPECT_FALSE(isDeallocated);
  block = nil;
  EXPECT_TRUE(isDeallocated);
}

TEST(ObjectiveCReferencesTest, BlocksMayCaptureWeakly) {
  __block int found = 0;
  void (^block)(void) = nil;
  @autoreleasepool {
    id object = [[NSObject alloc] init];
    id __weak weak = object;
    block = ^{
      found += weak != nil ? 1 : 10;
    };
    block();
  }
  block();
  EXPECT_EQ(found, 11);
}

TEST(ObjectiveCReferencesTest, BlocksShareTheirBlockVariables) {
  __block std::string text = "a";
  __block id object = nil;
  void (^append)(void) = ^{
    text += "b";
    object = @"set";
  };
  void (^copied)(void) = [append copy];
  append();
  copied();
  EXPECT_EQ(text, "abb");
  EXPECT_TRUE([object isEqualToString:@"set"]);
}

TEST(ObjectiveCReferencesTest, BlocksCopyCppObjects) {
  std::string (^block)(void) = nil;
  {
    const std::string text = "a text that lives on in the block";
    block = ^{
      return text;
    };
  }
  EXPECT_EQ(block(), "a text that lives on in the block");
}

TEST(ObjectiveCReferencesTest, BlocksLieInCollections) {
  NSMutableArray* blocks = [NSMutableArray array];
  __block int calls = 0;
  void (^block)(void) = ^{
    ++calls;
  };
  [blocks addObject:block];
  for (void (^each)(void) in blocks) {
    each();
  }
  EXPECT_EQ(calls, 1);
}

TEST(ObjectiveCReferencesTest, AssociatedObjectsLiveAsLongAsTheirOwner) {
  static char key = 0;
  bool isDeallocated = false;
  @autoreleasepool {
    NSObject* owner = [[NSObject alloc] init];
    @autoreleasepool {
      objc_setAssociatedObject(owner, &key, makeOwned(isDeallocated),
                               OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }
    EXPECT_FALSE(isDeallocated);
    EXPECT_NE(objc_getAssociatedObject(owner, &key), nil);
    EXPECT_EQ(objc_getAssociatedObject(owner, "another key"), nil);
  }
  EXPECT_TRUE(isDeallocated);
}

TEST(ObjectiveCReferencesTest, InstancesThatAreLeftAreNamed) {
  const std::size_t mark = navora::objc::instanceMark();
  id object = [[Owned alloc] init];
  id shared = navora::objc::forever([[NSObject alloc] init]);
  EXPECT_THAT(navora::objc::instancesSince(mark), ElementsAre("Owned"));
  EXPECT_NE(object, nil);
  object = nil;
  EXPECT_THAT(navora::objc::instancesSince(mark), IsEmpty());
  EXPECT_NE(shared, nil);
}

TEST(ObjectiveCReferencesDeathTest, AReleaseTooManyIsReportedByName) {
  EXPECT_DEATH(
      {
        id object = [[Owned alloc] init];
        objc_release(object);
      },
      "Objective-C: Owned: released once too often");
}

TEST(ObjectiveCReferencesDeathTest, AMessageToADeallocatedObjectIsReportedByName) {
  EXPECT_DEATH(
      {
        Owned* __unsafe_unretained dangling = nil;
        @autoreleasepool {
          Owned* object = [[Owned alloc] init];
          dangling = object;
        }
        [dangling other];
      },
      "Objective-C: -\\[Owned other\\]: message to a deallocated object");
}

TEST(ObjectiveCReferencesDeathTest, AStrongReferenceToADeallocatedObjectIsReportedByName) {
  EXPECT_DEATH(
      {
        Owned* __unsafe_unretained dangling = nil;
        @autoreleasepool {
          Owned* object = [[Owned alloc] init];
          dangling = object;
        }
        id strong = dangling;
        (void)strong;
      },
      "Objective-C: Owned: use of a deallocated object");
}

TEST(ObjectiveCReferencesDeathTest, AWeakReferenceDuringDeallocationIsReportedByName) {
  EXPECT_DEATH(
      {
        @autoreleasepool {
          (void)[[SelfReferring alloc] init];
        }
      },
      "a weak reference to SelfReferring, which is being deallocated");
}

TEST(ObjectiveCReferencesDeathTest, AnObjectThatIsRetainedForLaterDuringDeallocationIsReported) {
  EXPECT_DEATH(
      {
        __block id escaped = nil;
        @autoreleasepool {
          Owned* object = [[Owned alloc] init];
          Owned* __unsafe_unretained unretained = object;
          object.whenDeallocated = ^{
            escaped = unretained;
          };
        }
      },
      "Owned: retained while it was deallocated");
}

TEST(ObjectiveCReferencesDeathTest, AChangeDuringEnumerationIsReported) {
  NSMutableArray* array = [NSMutableArray array];
  [array addObject:@"one"];
  [array addObject:@"two"];
  EXPECT_DEATH(
      {
        for (id element in array) {
          [array addObject:element];
        }
      },
      "NSMutableArray: changed while it was enumerated");
}

}  // namespace
