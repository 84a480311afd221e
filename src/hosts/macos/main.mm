#import <Foundation/Foundation.h>

#include "app/DesktopLocale.h"
#include "app/NavoraAppDelegate.h"
#include "app/NavoraMain.h"
#include "hosts/macos/MacApplication.h"
#include "hosts/macos/MacImaging.h"
#include "hosts/macos/MacPlatform.h"

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
