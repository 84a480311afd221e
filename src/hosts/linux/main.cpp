#include <cstdlib>
#include <string>
#include <vector>

#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/linux/LinuxPlatform.h"
#include "hosts/linux/application/ApplicationVersion.h"
#include "hosts/linux/graphics/LinuxImaging.h"
#include "hosts/linux/system/DebugLog.h"
#include "locale/DesktopLocale.h"

namespace {

int runApplication(navora::LaunchPurpose purpose) {
  navora::LinuxPlatform platform;
  navora::DesktopLocale::configure(
      [&] { return platform.system().preferredLanguages(); },
      [&] { return platform.resources().read("i18n-catalog", "json"); },
      [&] { return platform.resources().read("linux/i18n-catalog", "json"); });
  navora::NavoraAppDelegate delegate(platform);
  return platform.application().run(delegate, purpose);
}

}  // namespace

int main(int argc, char** argv) {
  if (const char* request = std::getenv("NAVORA_DEBUG")) navora::enableDebugLog(request);
  navora::LinuxImaging imaging;
  return navora::NavoraMain::main(std::vector<std::string>(argv, argv + argc),
                                  {.style = navora::CommandLineStyle::strict,
                                   .imaging = imaging,
                                   .version = [] { return navora::applicationVersion(); },
                                   .runApplication = runApplication});
}
