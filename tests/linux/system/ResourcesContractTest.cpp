#include <string>

#include <gtest/gtest.h>

#include "fakes/FakeResources.h"
#include "hosts/linux/system/LinuxResources.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// Tests the contract of Resources with the fake and the Linux implementation.
class ResourcesInMemory {
 public:
  void put(const std::string& name, const std::string& extension, const std::string& content) {
    resources_.put(name, extension, content);
  }
  const Resources& resources() const { return resources_; }

 private:
  FakeResources resources_;
};

class InFolder {
 public:
  void put(const std::string& name, const std::string& extension, const std::string& content) {
    writeFile(folder_.path() / (name + "." + extension), content);
  }
  const Resources& resources() const { return resources_; }

 private:
  const TemporaryDirectory folder_{"navora-resources"};
  const LinuxResources resources_{folder_.path()};
};

template <typename Implementation>
class ResourcesContractTest : public testing::Test {
 protected:
  std::optional<std::string> read(std::string_view name, std::string_view extension) const {
    return implementation_.resources().read(name, extension);
  }

  Implementation implementation_;
};

using ResourcesImplementations = testing::Types<ResourcesInMemory, InFolder>;
TYPED_TEST_SUITE(ResourcesContractTest, ResourcesImplementations);

TYPED_TEST(ResourcesContractTest, AreReadUnchanged) {
  const std::string text("Größe\r\n\0 end", 14);
  this->implementation_.put("catalog", "json", text);
  EXPECT_EQ(this->read("catalog", "json"), text);
}

TYPED_TEST(ResourcesContractTest, MayBeEmpty) {
  this->implementation_.put("empty", "js", "");
  EXPECT_EQ(this->read("empty", "js"), "");
}

TYPED_TEST(ResourcesContractTest, AreDistinguishedByNameAndExtension) {
  this->implementation_.put("one", "js", "1");
  this->implementation_.put("one", "json", "2");
  this->implementation_.put("two", "js", "3");
  EXPECT_EQ(this->read("one", "js"), "1");
  EXPECT_EQ(this->read("one", "json"), "2");
  EXPECT_EQ(this->read("two", "js"), "3");
}

TYPED_TEST(ResourcesContractTest, AMissingResourceIsNullopt) {
  EXPECT_EQ(this->read("missing", "json"), std::nullopt);
}

TYPED_TEST(ResourcesContractTest, AResourceThatIsNotUtf8IsNullopt) {
  this->implementation_.put("latin", "txt",
                            "Gr\xf6\xdf"
                            "e");
  this->implementation_.put("cut", "txt", "\xe2\x82");
  EXPECT_EQ(this->read("latin", "txt"), std::nullopt);
  EXPECT_EQ(this->read("cut", "txt"), std::nullopt);
}

}  // namespace
}  // namespace navora
