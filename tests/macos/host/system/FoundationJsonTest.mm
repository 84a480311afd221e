#include "hosts/macos/system/FoundationJson.h"

#include <limits>

#include <gmock/gmock.h>

#include "hosts/macos/system/Conversions.h"

namespace navora {
namespace {

TEST(FoundationJsonTest, ConvertsObjectsOfEveryKind) {
  NSDictionary* object = @{
    @"array" : @[
      [NSNumber numberWithBool:YES], [NSNumber numberWithInteger:-1],
      [NSNumber numberWithDouble:0.5], [NSNull null]
    ],
    @"text" : @"“Größe” / \\ \n",
    @"nothing" : @{},
  };
  const Json expected = {{"array", {true, -1, 0.5, nullptr}},
                         {"text", "“Größe” / \\ \n"},
                         {"nothing", Json::object()}};
  EXPECT_EQ(toJson(object), expected);
}

TEST(FoundationJsonTest, TellsBooleansFromNumbers) {
  EXPECT_EQ(toJsonText([NSNumber numberWithBool:YES]), "true");
  EXPECT_EQ(toJsonText([NSNumber numberWithInteger:1]), "1");
}

TEST(FoundationJsonTest, KeepsAllDigitsOfWholeNumbers) {
  const Json numbers = {9007199254740993, -9007199254740993, 18446744073709551615U};
  EXPECT_EQ(toJson(toPropertyList(numbers)), numbers);
}

TEST(FoundationJsonTest, ConvertsNilToNull) {
  EXPECT_EQ(toJsonText(nil), "null");
}

TEST(FoundationJsonTest, RefusesWhatJsonCannotExpress) {
  id const objects[] = {
    @[ [NSData dataWithBytes:"x" length:1] ],
    @{[NSNumber numberWithInteger:1] : @"value"},
    [NSNumber numberWithDouble:std::numeric_limits<double>::infinity()],
    [NSNumber numberWithDouble:std::numeric_limits<double>::quiet_NaN()],
  };
  for (id object : objects) {
    EXPECT_EQ(toJsonText(object), std::nullopt);
  }
}

TEST(FoundationJsonTest, RefusesHalfASurrogatePair) {
  const unichar half = 0xD83D;
  EXPECT_EQ(toJsonText([NSString stringWithCharacters:&half length:1]), std::nullopt);
}

TEST(FoundationJsonTest, RefusesACycle) {
  NSMutableArray* array = [NSMutableArray array];
  NSMutableArray* inner = [NSMutableArray array];
  [array addObject:inner];
  [inner addObject:array];
  EXPECT_EQ(toJsonText(array), std::nullopt);
  // The cycle would outlive the test.
  [inner removeObjectIdenticalTo:array];
}

TEST(FoundationJsonTest, RefusesTooMuch) {
  NSMutableArray* many = [NSMutableArray array];
  for (int count = 0; count < 100'000; ++count) {
    [many addObject:@""];
  }
  EXPECT_EQ(toJsonText(many), std::nullopt);
}

TEST(FoundationJsonTest, PropertyListsHaveNoNull) {
  EXPECT_EQ(toPropertyList(nullptr), nil);
  EXPECT_EQ(toJson(toPropertyList({{"a", nullptr}, {"b", {nullptr, 1}}})), (Json{{"b", {1}}}));
}

}  // namespace
}  // namespace navora
