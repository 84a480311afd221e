#include <memory>

#include "contracts/HttpSessionContract.h"
#include "hosts/macos/system/MacHttpSession.h"

namespace navora {
namespace {

class MacService : public LoopbackService {
 public:
  std::unique_ptr<HttpSession> makeSession(const HttpSessionConfiguration& configuration) {
    return std::make_unique<MacHttpSession>(configuration);
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, HttpSessionContractTest, MacService);

}  // namespace
}  // namespace navora
