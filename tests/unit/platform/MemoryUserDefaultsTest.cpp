#include <gtest/gtest.h>

#include "platform/MemoryUserDefaults.h"

namespace navora {
namespace {

TEST(MemoryUserDefaults, StartsWithoutValues) {
  EXPECT_EQ(MemoryUserDefaults().value("key"), std::nullopt);
}

TEST(MemoryUserDefaults, StoresEveryKindOfValue) {
  MemoryUserDefaults defaults;
  for (const Json& value : {Json("text"), Json(true), Json(1.5), Json(-3), Json::array({1, "a"}),
                            Json{{"a", {{"b", nullptr}}}}}) {
    defaults.setValue("key", value);
    EXPECT_EQ(defaults.value("key"), value);
  }
}

TEST(MemoryUserDefaults, DistinguishesANullValueFromAMissingOne) {
  MemoryUserDefaults defaults;
  defaults.setValue("key", nullptr);
  ASSERT_TRUE(defaults.value("key").has_value());
  EXPECT_TRUE(defaults.value("key")->is_null());
}

TEST(MemoryUserDefaults, KeepsTheLastValueOfAKey) {
  MemoryUserDefaults defaults;
  defaults.setValue("key", 1);
  defaults.setValue("key", "two");
  EXPECT_EQ(defaults.value("key"), Json("two"));
}

TEST(MemoryUserDefaults, ComparesKeysExactly) {
  MemoryUserDefaults defaults;
  defaults.setValue("key", 1);
  defaults.setValue("Key", 2);
  defaults.setValue("", 3);
  EXPECT_EQ(defaults.value("key"), Json(1));
  EXPECT_EQ(defaults.value("Key"), Json(2));
  EXPECT_EQ(defaults.value(""), Json(3));
}

TEST(MemoryUserDefaults, RemovesOnlyTheNamedValue) {
  MemoryUserDefaults defaults;
  defaults.setValue("gone", 1);
  defaults.setValue("kept", 2);
  defaults.removeValue("gone");
  defaults.removeValue("never there");
  EXPECT_EQ(defaults.value("gone"), std::nullopt);
  EXPECT_EQ(defaults.value("kept"), Json(2));
}

TEST(MemoryUserDefaults, ReturnsCopiesIndependentOfTheStore) {
  MemoryUserDefaults defaults;
  defaults.setValue("key", 1);
  const auto before = defaults.value("key");
  defaults.setValue("key", 2);
  EXPECT_EQ(before, Json(1));
}

}  // namespace
}  // namespace navora
