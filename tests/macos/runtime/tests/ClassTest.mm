// Classes, protocols, properties and the layout of instances.

#include <string>

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

#include "runtime/Runtime.h"
#include "runtime/tests/Sliding.h"

@protocol Speaker <NSObject>
- (NSString*)speak;
@optional
- (NSString*)whisper;
@end

@protocol LoudSpeaker <Speaker>
@end

@interface Dog : NSObject <LoudSpeaker>
@end

@implementation Dog
- (NSString*)speak {
  return @"Woof";
}
@end

@interface Puppy : Dog
@end

@implementation Puppy
- (NSString*)whisper {
  return @"woof";
}
@end

@interface Dog (Guarding) <NSCopying>
@end

@implementation Dog (Guarding)
- (id)copyWithZone:(nullable NSZone*)zone {
  return self;
}
@end

@interface Record : NSObject
@property(copy) NSString* atomicCopy;
@property(nonatomic, copy) NSString* copied;
@property(nonatomic, strong) id strong;
@property(strong) id atomicStrong;
@property(nonatomic, weak) id weak;
@property CGRect rectangle;
@property(nonatomic, getter=isMarked) BOOL marked;
@property(nonatomic) std::string text;
@property(readonly) int computed;
@end

@implementation Record
- (int)computed {
  return 7;
}
@end

namespace {

std::string& lifeLog() {
  static std::string log;
  return log;
}

struct Traced {
  explicit Traced(char letter) : name(letter) { lifeLog() += name; }
  ~Traced() { lifeLog() += static_cast<char>(name - 'a' + 'A'); }
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;
  char name;
};
struct TracedBase : Traced {
  TracedBase() : Traced('b') {}
};
struct TracedDerived : Traced {
  TracedDerived() : Traced('d') {}
};

}  // namespace

@interface LifeBase : NSObject {
  TracedBase _traced;
}
@end

@implementation LifeBase
- (void)dealloc {
  lifeLog() += '2';
}
@end

@interface LifeDerived : LifeBase {
  TracedDerived _tracedToo;
}
@end

@implementation LifeDerived
- (void)dealloc {
  lifeLog() += '1';
}
@end

// Compiled against a superclass without visible instance variables.
@interface SlidingDerived : SlidingBase {
 @public
  std::string _ownText;
  long _own;
}
@end

@implementation SlidingDerived
@end

namespace {

TEST(ObjectiveCClassesTest, HaveNamesAndSuperclasses) {
  EXPECT_STREQ(class_getName([Puppy class]), "Puppy");
  EXPECT_TRUE([NSStringFromClass([Puppy class]) isEqualToString:@"Puppy"]);
  EXPECT_EQ([Puppy superclass], [Dog class]);
  EXPECT_EQ([NSObject superclass], Nil);
  EXPECT_EQ([[[Puppy alloc] init] class], [Puppy class]);
  EXPECT_TRUE([[[Puppy alloc] init] isKindOfClass:[Dog class]]);
  EXPECT_FALSE([[[Dog alloc] init] isKindOfClass:[Puppy class]]);
  EXPECT_EQ(objc_getClass("Puppy"), [Puppy class]);
  EXPECT_EQ(objc_getClass("No such class"), Nil);
}

TEST(ObjectiveCClassesTest, AnswerWhichMessagesTheyKnow) {
  Dog* dog = [[Dog alloc] init];
  Puppy* puppy = [[Puppy alloc] init];
  EXPECT_TRUE([dog respondsToSelector:@selector(speak)]);
  EXPECT_FALSE([dog respondsToSelector:@selector(whisper)]);
  EXPECT_TRUE([puppy respondsToSelector:@selector(whisper)]);
  EXPECT_TRUE([Puppy instancesRespondToSelector:@selector(speak)]);
  EXPECT_TRUE([(id)[Puppy class] respondsToSelector:@selector(alloc)]);
  EXPECT_FALSE([(id)[Puppy class] respondsToSelector:@selector(speak)]);
  EXPECT_EQ(NSSelectorFromString(@"whisper"), @selector(whisper));
}

TEST(ObjectiveCClassesTest, ConformToProtocolsOfTheirOwnInheritedOrOfCategories) {
  Puppy* puppy = [[Puppy alloc] init];
  EXPECT_TRUE([puppy conformsToProtocol:@protocol(LoudSpeaker)]);
  EXPECT_TRUE([puppy conformsToProtocol:@protocol(Speaker)]);
  EXPECT_TRUE([puppy conformsToProtocol:@protocol(NSCopying)]);
  EXPECT_FALSE([puppy conformsToProtocol:@protocol(NSFastEnumeration)]);
  EXPECT_FALSE([[Record alloc] init] == nil);
  EXPECT_FALSE([[[Record alloc] init] conformsToProtocol:@protocol(Speaker)]);
}

TEST(ObjectiveCClassesTest, PropertiesKeepTheirValues) {
  Record* record = [[Record alloc] init];
  NSMutableString* text = [NSMutableString string];
  [text replaceCharactersInRange:NSMakeRange(0, 0) withString:@"one"];
  record.atomicCopy = text;
  record.copied = text;
  record.strong = text;
  record.atomicStrong = text;
  record.weak = text;
  [text replaceCharactersInRange:NSMakeRange(0, 3) withString:@"two"];
  EXPECT_TRUE([record.atomicCopy isEqualToString:@"one"]);
  EXPECT_TRUE([record.copied isEqualToString:@"one"]);
  EXPECT_EQ(record.strong, text);
  EXPECT_EQ(record.atomicStrong, text);
  EXPECT_EQ(record.weak, text);
  record.rectangle = CGRect{{1, 2}, {3, 4}};
  EXPECT_EQ(record.rectangle.size.height, 4);
  record.marked = YES;
  EXPECT_TRUE([record isMarked]);
  record.text = "text that is too long for the string's own storage";
  EXPECT_EQ(record.text, "text that is too long for the string's own storage");
  EXPECT_EQ(record.computed, 7);
}

TEST(ObjectiveCClassesTest, ConstructAndDestroyCppMembersInTheOrderOfInheritance) {
  lifeLog().clear();
  @autoreleasepool {
    (void)[[LifeDerived alloc] init];
  }
  // dealloc of the derived class, then of the base class, then the members.
  EXPECT_EQ(lifeLog(), "bd12DB");
}

TEST(ObjectiveCClassesTest, InstanceVariablesLieBehindThoseOfTheSuperclass) {
  SlidingDerived* object = [[SlidingDerived alloc] init];
  object.first = 1;
  object.second = 2;
  object->_own = 3;
  object->_ownText = "a text of the derived class, which is long as well";
  EXPECT_EQ(object.first, 1);
  EXPECT_EQ(object.second, 2);
  EXPECT_EQ(object->_own, 3);
  EXPECT_EQ(object->_ownText, "a text of the derived class, which is long as well");
  EXPECT_GE(class_getInstanceSize([SlidingDerived class]),
            class_getInstanceSize([SlidingBase class]) + sizeof(std::string) + sizeof(long));
}

}  // namespace
