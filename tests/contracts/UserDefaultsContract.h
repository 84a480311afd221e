#pragma once

#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/UserDefaults.h"

namespace navora {

// The contract of UserDefaults, for the fake and for every host's implementation.
template <typename Implementation>
class UserDefaultsContractTest : public testing::Test {
 protected:
  UserDefaults& defaults() { return implementation_.defaults(); }

 private:
  Implementation implementation_;
};

TYPED_TEST_SUITE_P(UserDefaultsContractTest);

TYPED_TEST_P(UserDefaultsContractTest, BeginsEmpty) {
  EXPECT_EQ(this->defaults().value("key"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContractTest, ReturnsValuesOfEveryType) {
  const std::vector<Json> values = {nullptr,
                                    true,
                                    0,
                                    -9007199254740993,
                                    0.1,
                                    "",
                                    "Zürich \" \\ \n 😀",
                                    Json::array(),
                                    Json::object(),
                                    Json{{"nested", Json::array({1, "two", nullptr})}}};
  for (const Json& value : values) {
    this->defaults().setValue("key", value);
    EXPECT_EQ(this->defaults().value("key"), value) << value;
  }
}

TYPED_TEST_P(UserDefaultsContractTest, KeysAreIndependent) {
  this->defaults().setValue("a", 1);
  this->defaults().setValue("A", 2);
  this->defaults().setValue("", 3);
  this->defaults().setValue("a.b/c ü", 4);
  EXPECT_EQ(this->defaults().value("a"), 1);
  EXPECT_EQ(this->defaults().value("A"), 2);
  EXPECT_EQ(this->defaults().value(""), 3);
  EXPECT_EQ(this->defaults().value("a.b/c ü"), 4);
}

TYPED_TEST_P(UserDefaultsContractTest, RemovesOnlyTheGivenKey) {
  this->defaults().setValue("gone", 1);
  this->defaults().setValue("kept", 2);
  this->defaults().removeValue("gone");
  this->defaults().removeValue("never there");
  EXPECT_EQ(this->defaults().value("gone"), std::nullopt);
  EXPECT_EQ(this->defaults().value("kept"), 2);
}

TYPED_TEST_P(UserDefaultsContractTest, NullIsAValue) {
  this->defaults().setValue("key", nullptr);
  ASSERT_TRUE(this->defaults().value("key").has_value());
  EXPECT_TRUE(this->defaults().value("key")->is_null());
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContractTest, BeginsEmpty, ReturnsValuesOfEveryType,
                            KeysAreIndependent, RemovesOnlyTheGivenKey, NullIsAValue);

}  // namespace navora
