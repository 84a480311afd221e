// Message sends, as the compiler writes them.

#include <complex>
#include <cstdarg>
#include <string>

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

namespace {

struct Large {
  long values[8];
};
struct Small {
  double x;
  double y;
};

}  // namespace

@interface Sender : NSObject
@property(nonatomic) long factor;
- (long)sumOf:(long)a
            b:(long)b
            c:(long)c
            d:(long)d
            e:(long)e
            f:(long)f
         more:(double)g
            h:(double)h
            i:(float)i;
- (double)half:(double)value;
- (float)halfOfFloat:(float)value;
- (long double)halfOfLongDouble:(long double)value;
- (Large)largeWith:(long)value;
- (Small)smallWith:(double)value;
- (long)sumOfCount:(int)count, ...;
- (NSString*)name;
+ (NSString*)name;
@end

@implementation Sender

- (long)sumOf:(long)a
            b:(long)b
            c:(long)c
            d:(long)d
            e:(long)e
            f:(long)f
         more:(double)g
            h:(double)h
            i:(float)i {
  return self.factor * (a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * f) +
         static_cast<long>(7 * g + 8 * h + 9 * static_cast<double>(i));
}

- (double)half:(double)value {
  return value / 2;
}

- (float)halfOfFloat:(float)value {
  return value / 2;
}

- (long double)halfOfLongDouble:(long double)value {
  return value / 2;
}

- (Large)largeWith:(long)value {
  return Large{{value, value + 1, self.factor}};
}

- (Small)smallWith:(double)value {
  return Small{value, value + 1};
}

- (long)sumOfCount:(int)count, ... {
  va_list arguments;
  va_start(arguments, count);
  double sum = 0;
  for (int index = 0; index < count; ++index) {
    sum += index % 2 == 0 ? va_arg(arguments, int) : va_arg(arguments, double);
  }
  va_end(arguments);
  return static_cast<long>(sum);
}

- (NSString*)name {
  return @"instance";
}

+ (NSString*)name {
  return @"class";
}

@end

@interface DerivedSender : Sender
@end

@implementation DerivedSender

- (double)half:(double)value {
  return 100 + [super half:value];
}

- (Large)largeWith:(long)value {
  Large result = [super largeWith:value];
  result.values[7] = 7;
  return result;
}

+ (NSString*)name {
  return [[super name] isEqualToString:@"class"] ? @"derived class" : @"wrong";
}

@end

@interface MostDerivedSender : DerivedSender
@end

@implementation MostDerivedSender

- (double)half:(double)value {
  return 1000 + [super half:value];
}

@end

@interface Sender (Additions)
- (NSString*)addition;
+ (NSString*)classAddition;
@end

@implementation Sender (Additions)

- (NSString*)addition {
  return [self name];
}

+ (NSString*)classAddition {
  return [self name];
}

@end

namespace {

TEST(ObjectiveCMessagesTest, PassArgumentsInRegistersAndOnTheStack) {
  Sender* sender = [[Sender alloc] init];
  sender.factor = 1000;
  EXPECT_EQ([sender sumOf:1 b:2 c:3 d:4 e:5 f:6 more:0.5 h:1 i:2], 91'029);
}

TEST(ObjectiveCMessagesTest, ReturnNumbersOfEveryKind) {
  Sender* sender = [[Sender alloc] init];
  EXPECT_EQ([sender half:5], 2.5);
  EXPECT_EQ([sender halfOfFloat:5], 2.5F);
  EXPECT_EQ([sender halfOfLongDouble:5], 2.5L);
}

TEST(ObjectiveCMessagesTest, ReturnStructuresInRegistersAndInMemory) {
  Sender* sender = [[Sender alloc] init];
  sender.factor = 9;
  const Large large = [sender largeWith:5];
  EXPECT_EQ(large.values[0], 5);
  EXPECT_EQ(large.values[1], 6);
  EXPECT_EQ(large.values[2], 9);
  const Small small = [sender smallWith:1.5];
  EXPECT_EQ(small.x, 1.5);
  EXPECT_EQ(small.y, 2.5);
}

TEST(ObjectiveCMessagesTest, PassVariableArguments) {
  EXPECT_EQ(([[[Sender alloc] init] sumOfCount:4, 1, 2.0, 3, 4.0]), 10);
}

TEST(ObjectiveCMessagesTest, ToNilReturnZeroOfEveryKind) {
  Sender* missing = nil;
  EXPECT_EQ([missing name], nil);
  EXPECT_EQ(missing.factor, 0);
  EXPECT_EQ([missing half:5], 0);
  EXPECT_EQ([missing halfOfFloat:5], 0);
  EXPECT_EQ([missing halfOfLongDouble:5], 0);
  const Small small = [missing smallWith:1];
  EXPECT_EQ(small.x, 0);
  EXPECT_EQ(small.y, 0);
  Large large = {{1, 2, 3, 4, 5, 6, 7, 8}};
  large = [missing largeWith:1];
  for (const long value : large.values) {
    EXPECT_EQ(value, 0);
  }
}

TEST(ObjectiveCMessagesTest, ToSuperBeginAboveTheClassOfTheMethod) {
  EXPECT_EQ([[[DerivedSender alloc] init] half:4], 102);
  EXPECT_EQ([[[MostDerivedSender alloc] init] half:4], 1102);
  const Large large = [[[MostDerivedSender alloc] init] largeWith:5];
  EXPECT_EQ(large.values[0], 5);
  EXPECT_EQ(large.values[7], 7);
}

TEST(ObjectiveCMessagesTest, FindClassMethodsInTheMetaclass) {
  EXPECT_TRUE([[Sender name] isEqualToString:@"class"]);
  EXPECT_TRUE([[DerivedSender name] isEqualToString:@"derived class"]);
  // A class answers the instance methods of the root class.
  EXPECT_TRUE([(id)[Sender class] isEqual:[Sender class]]);
}

TEST(ObjectiveCMessagesTest, FindTheMethodsOfCategories) {
  EXPECT_TRUE([[[[Sender alloc] init] addition] isEqualToString:@"instance"]);
  EXPECT_TRUE([[DerivedSender classAddition] isEqualToString:@"derived class"]);
}

TEST(ObjectiveCMessagesDeathTest, AnUnrecognizedSelectorIsReportedByName) {
  id sender = [[Sender alloc] init];
  EXPECT_DEATH([sender addObject:@"x"],
               "Objective-C: -\\[Sender addObject:\\]: unrecognized selector");
  EXPECT_DEATH([(id)[Sender class] addObject:@"x"], "\\+\\[Sender addObject:\\]: unrecognized");
}

}  // namespace
