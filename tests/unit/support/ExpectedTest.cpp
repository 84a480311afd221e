#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support/Expected.h"

namespace navora {
namespace {

enum class Failure { timeout, refused };

Expected<int, Failure> half(int number) {
  if (number % 2 != 0) return Unexpected(Failure::refused);
  return number / 2;
}

TEST(Expected, HoldsAValueOrAnError) {
  EXPECT_TRUE(half(4));
  EXPECT_EQ(half(4).value(), 2);
  EXPECT_EQ(*half(4), 2);
  EXPECT_FALSE(half(3));
  EXPECT_EQ(half(3).error(), Failure::refused);
  EXPECT_EQ(half(3), (Expected<int, Failure>(Unexpected(Failure::refused))));
  EXPECT_FALSE(half(3) == half(4));
}

TEST(Expected, DistinguishesValueAndErrorOfTheSameType) {
  const Expected<std::string, std::string> value(std::string("same"));
  const Expected<std::string, std::string> error(Unexpected(std::string("same")));
  EXPECT_TRUE(value.hasValue());
  EXPECT_FALSE(error.hasValue());
  EXPECT_FALSE(value == error);
  EXPECT_EQ(value->size(), 4U);
}

TEST(Expected, MovesAValueThatCannotBeCopied) {
  Expected<std::unique_ptr<int>, Failure> owner(std::make_unique<int>(7));
  const std::unique_ptr<int> taken = std::move(owner).value();
  EXPECT_EQ(*taken, 7);
}

TEST(ExpectedDeathTest, AbortsOnAccessToTheOtherAlternative) {
  EXPECT_DEATH(half(3).value(), "Fatal error: .*Expected");
  EXPECT_DEATH(half(4).error(), "Fatal error: .*Expected");
}

}  // namespace
}  // namespace navora
