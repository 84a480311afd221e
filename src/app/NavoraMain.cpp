#include "app/NavoraMain.h"

#include <algorithm>

#include "app/NavoraIcon.h"
#include "capture/QuickCapturePolicy.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"

namespace navora {
namespace {

void runSelfTests(Imaging& imaging) {
  DesktopOrigin::selfTest();
  QuickCapturePolicy::selfTest();
  DesktopLocale::selfTest();
  NavoraIcon::selfTest(imaging);
}

}  // namespace

int NavoraMain::main(const std::vector<std::string>& arguments, Imaging& imaging,
                     const std::function<int()>& runApplication) {
  if (std::ranges::find(arguments, "--self-test") == arguments.end()) return runApplication();
  runSelfTests(imaging);
  return 0;
}

}  // namespace navora
