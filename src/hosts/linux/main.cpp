#include <string>
#include <vector>

#include "app/DesktopLocale.h"
#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/linux/LinuxPlatform.h"

namespace {

int runApplication() {
  navora::LinuxPlatform platform;
  navora::DesktopLocale::configure(
      [&] { return platform.system().preferredLanguages(); },
      [&] { return platform.resources().read("i18n-catalog", "json"); });
  navora::NavoraAppDelegate delegate(platform);
  return platform.application().run(delegate);
}

}  // namespace

int main(int argc, char** argv) {
  return navora::NavoraMain::main(std::vector<std::string>(argv, argv + argc), runApplication);
}
