#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/Resources.h"

namespace navora {

// The contract of Resources, for the fake and for every host's implementation.
template <typename Implementation>
class ResourcesContractTest : public testing::Test {
 protected:
  std::optional<std::string> read(std::string_view name, std::string_view extension) const {
    return implementation_.resources().read(name, extension);
  }

  Implementation implementation_;
};

TYPED_TEST_SUITE_P(ResourcesContractTest);

TYPED_TEST_P(ResourcesContractTest, AreReadUnchanged) {
  const std::string text("Größe\r\n\0 end", 14);
  this->implementation_.put("catalog", "json", text);
  EXPECT_EQ(this->read("catalog", "json"), text);
}

TYPED_TEST_P(ResourcesContractTest, MayBeEmpty) {
  this->implementation_.put("empty", "js", "");
  EXPECT_EQ(this->read("empty", "js"), "");
}

TYPED_TEST_P(ResourcesContractTest, AreDistinguishedByNameAndExtension) {
  this->implementation_.put("one", "js", "1");
  this->implementation_.put("one", "json", "2");
  this->implementation_.put("two", "js", "3");
  EXPECT_EQ(this->read("one", "js"), "1");
  EXPECT_EQ(this->read("one", "json"), "2");
  EXPECT_EQ(this->read("two", "js"), "3");
}

TYPED_TEST_P(ResourcesContractTest, AMissingResourceIsNullopt) {
  EXPECT_EQ(this->read("missing", "json"), std::nullopt);
}

TYPED_TEST_P(ResourcesContractTest, AResourceThatIsNotUtf8IsNullopt) {
  this->implementation_.put("latin", "txt",
                            "Gr\xf6\xdf"
                            "e");
  this->implementation_.put("cut", "txt", "\xe2\x82");
  EXPECT_EQ(this->read("latin", "txt"), std::nullopt);
  EXPECT_EQ(this->read("cut", "txt"), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(ResourcesContractTest, AreReadUnchanged, MayBeEmpty,
                            AreDistinguishedByNameAndExtension, AMissingResourceIsNullopt,
                            AResourceThatIsNotUtf8IsNullopt);

}  // namespace navora
