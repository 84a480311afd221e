#include "app/NavoraMain.h"

#include <algorithm>

#include "app/DesktopLocale.h"
#include "capture/QuickCapturePolicy.h"
#include "navigation/DesktopOrigin.h"

namespace navora {
namespace {

void runSelfTests() {
  DesktopOrigin::selfTest();
  QuickCapturePolicy::selfTest();
  DesktopLocale::selfTest();
}

}  // namespace

int NavoraMain::main(const std::vector<std::string>& arguments,
                     const std::function<int()>& runApplication) {
  if (std::ranges::find(arguments, "--self-test") == arguments.end()) return runApplication();
  runSelfTests();
  return 0;
}

}  // namespace navora
