#include "contracts/UserDefaultsContract.h"
#include "hosts/macos/system/MacUserDefaults.h"

namespace navora {
namespace {

class StandardDefaults {
 public:
  UserDefaults& defaults() { return defaults_; }

 private:
  MacUserDefaults defaults_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserDefaultsContractTest, StandardDefaults);

}  // namespace
}  // namespace navora
