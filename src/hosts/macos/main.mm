#include <string>
#include <vector>

#import <Foundation/Foundation.h>

#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/macos/MacPlatform.h"
#include "hosts/macos/application/MacApplication.h"
#include "hosts/macos/graphics/MacImaging.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/MacResources.h"
#include "hosts/macos/system/MacSystem.h"
#include "locale/DesktopLocale.h"

namespace {

int runApplication(navora::LaunchPurpose) {
  navora::MacApplication application;
  navora::MacPlatform platform(application);
  navora::NavoraAppDelegate delegate(platform);
  return application.run(delegate);
}

std::string bundleVersion() {
  id version = [NSBundle.mainBundle objectForInfoDictionaryKey:@"CFBundleShortVersionString"];
  return [version isKindOfClass:[NSString class]] ? navora::toString((NSString*)version) : "";
}

}  // namespace

int main(int argc, char* argv[]) {
  @autoreleasepool {
    navora::DesktopLocale::configure(
        [] { return navora::MacSystem().preferredLanguages(); },
        [] { return navora::MacResources().read("i18n-catalog", "json"); });
    navora::MacImaging imaging;
    return navora::NavoraMain::main(std::vector<std::string>(argv, argv + argc),
                                    {.style = navora::CommandLineStyle::macos,
                                     .imaging = imaging,
                                     .version = bundleVersion,
                                     .runApplication = runApplication});
  }
}
