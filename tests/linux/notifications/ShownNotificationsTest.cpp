#include <gtest/gtest.h>

#include "hosts/linux/notifications/ShownNotifications.h"

namespace navora {
namespace {

TEST(ShownNotificationsTest, FindsByNumberAndByIdentifier) {
  ShownNotifications shown(10);
  shown.add(7, "a", "url a");
  shown.add(3, "b", "url b");
  EXPECT_EQ(shown.numberOf("a"), 7U);
  EXPECT_EQ(shown.urlOf(3), "url b");
  EXPECT_EQ(shown.numberOf("c"), std::nullopt);
  EXPECT_EQ(shown.urlOf(4), std::nullopt);
  EXPECT_EQ(shown.numbers(), (std::vector<std::uint32_t>{7, 3}));
}

TEST(ShownNotificationsTest, ForgetsRemovedNotifications) {
  ShownNotifications shown(10);
  shown.add(7, "a", "url a");
  shown.add(8, "b", "url b");
  shown.remove(7);
  shown.remove(9);
  EXPECT_EQ(shown.numberOf("a"), std::nullopt);
  EXPECT_EQ(shown.numberOf("b"), 8U);
  shown.clear();
  EXPECT_EQ(shown.numberOf("b"), std::nullopt);
}

TEST(ShownNotificationsTest, KeepsOneEntryPerNumberAndIdentifier) {
  ShownNotifications shown(10);
  shown.add(7, "a", "first");
  shown.add(8, "a", "second");
  EXPECT_EQ(shown.numberOf("a"), 8U);
  EXPECT_EQ(shown.urlOf(7), std::nullopt);
  shown.add(8, "b", "third");
  EXPECT_EQ(shown.numberOf("a"), std::nullopt);
  EXPECT_EQ(shown.urlOf(8), "third");
}

TEST(ShownNotificationsTest, ForgetsTheOldestEntryNotTheSmallestNumber) {
  ShownNotifications shown(2);
  shown.add(1, "a", "first");
  shown.add(2, "b", "second");
  shown.add(1, "a", "replaced");
  shown.add(3, "c", "third");
  EXPECT_EQ(shown.urlOf(2), std::nullopt);
  EXPECT_EQ(shown.urlOf(1), "replaced");
  EXPECT_EQ(shown.urlOf(3), "third");
}

}  // namespace
}  // namespace navora
