#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/UserDefaultsContract.h"
#include "hosts/linux/system/LinuxUserDefaults.h"
#include "platform/MemoryUserDefaults.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// Tests the contract of UserDefaults with every implementation.
class InFile {
 public:
  UserDefaults& defaults() { return defaults_; }

 private:
  const TemporaryDirectory folder_{"navora-defaults"};
  LinuxUserDefaults defaults_{folder_.path() / "defaults.json"};
};

class InUnwritableFile {
 public:
  UserDefaults& defaults() { return defaults_; }

 private:
  LinuxUserDefaults defaults_{"/proc/navora/defaults.json"};
};

class DefaultsInMemory {
 public:
  UserDefaults& defaults() { return defaults_; }

 private:
  MemoryUserDefaults defaults_;
};

using UserDefaultsImplementations = testing::Types<DefaultsInMemory, InFile, InUnwritableFile>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, UserDefaultsContractTest, UserDefaultsImplementations);

}  // namespace
}  // namespace navora
