#import <Foundation/Foundation.h>

#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/macos/MacPlatform.h"
#include "hosts/macos/application/MacApplication.h"
#include "hosts/macos/graphics/MacImaging.h"
#include "locale/DesktopLocale.h"

namespace {

int runApplication() {
  navora::MacApplication application;
  navora::MacPlatform platform(application);
  navora::NavoraAppDelegate delegate(platform);
  return application.run(delegate);
}

}  // namespace

int main(int argc, char* argv[]) {
  @autoreleasepool {
    navora::DesktopLocale::configure(
        [] { return navora::MacSystem().preferredLanguages(); },
        [] { return navora::MacResources().read("i18n-catalog", "json"); });
    navora::MacImaging imaging;
    return navora::NavoraMain::main(std::vector<std::string>(argv, argv + argc), imaging,
                                    runApplication);
  }
}
