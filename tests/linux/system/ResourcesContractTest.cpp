#include <string>

#include <gtest/gtest.h>

#include "contracts/ResourcesContract.h"
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

using ResourcesImplementations = testing::Types<ResourcesInMemory, InFolder>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ResourcesContractTest, ResourcesImplementations);

}  // namespace
}  // namespace navora
