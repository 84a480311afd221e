#include <algorithm>
#include <string>
#include <vector>

#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/linux/LinuxPlatform.h"
#include "hosts/linux/graphics/LinuxImaging.h"
#include "locale/DesktopLocale.h"

namespace {

using Purpose = navora::LinuxApplication::Purpose;

int runApplication(Purpose purpose) {
  navora::LinuxPlatform platform;
  navora::DesktopLocale::configure(
      [&] { return platform.system().preferredLanguages(); },
      [&] { return platform.resources().read("i18n-catalog", "json"); });
  navora::NavoraAppDelegate delegate(platform);
  return platform.application().run(delegate, purpose);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  const bool capture = std::ranges::find(arguments, "--capture") != arguments.end();
  navora::LinuxImaging imaging;
  return navora::NavoraMain::main(arguments, imaging, [&] {
    return runApplication(capture ? Purpose::capture : Purpose::application);
  });
}
