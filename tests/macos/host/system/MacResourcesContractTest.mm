#include "contracts/ResourcesContract.h"
#include "frameworks/Foundation/FoundationState.h"
#include "hosts/macos/system/MacResources.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

class InBundle {
 public:
  InBundle() { doubles::FoundationState::shared().resources = folder_.path(); }

  void put(const std::string& name, const std::string& extension, const std::string& content) {
    writeFile(folder_.path() / (name + "." + extension), content);
  }
  const Resources& resources() const { return resources_; }

 private:
  const TemporaryDirectory folder_{"navora-resources"};
  const MacResources resources_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ResourcesContractTest, InBundle);

}  // namespace
}  // namespace navora
