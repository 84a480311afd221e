#include "hosts/macos/system/MacWorkspace.h"

#import <AppKit/AppKit.h>

#include "hosts/macos/system/AppKitConversions.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/MacSystem.h"

namespace navora {

namespace {

class MacRunningApplication final : public RunningApplication {
 public:
  explicit MacRunningApplication(NSRunningApplication* application) : application_(application) {}

  bool isTerminated() const override { return application_.terminated; }
  void activate() override { [application_ activateWithOptions:0]; }

 private:
  NSRunningApplication* application_;
};

Screen toScreen(NSScreen* screen) {
  return Screen{.frame = toRectangle(screen.frame),
                .visibleFrame = toRectangle(screen.visibleFrame)};
}

}  // namespace

void MacWorkspace::open(const Url& url) {
  // URLWithString: would encode or reject characters that WebKit leaves as they are.
  const std::string text = url.textAsParsed();
  NSURL* address = [NSURL URLWithDataRepresentation:[NSData dataWithBytes:text.data()
                                                                   length:text.size()]
                                      relativeToURL:nil];
  if (address != nil && [[NSWorkspace sharedWorkspace] openURL:address]) return;
  MacSystem().debug(DebugArea::navigation, "No program opened " + url.string());
}

std::shared_ptr<RunningApplication> MacWorkspace::frontmostApplication() {
  NSRunningApplication* application = [NSWorkspace sharedWorkspace].frontmostApplication;
  return application == nil ? nullptr : std::make_shared<MacRunningApplication>(application);
}

std::vector<Screen> MacWorkspace::screens() const {
  std::vector<Screen> screens;
  for (NSScreen* screen in [NSScreen screens]) {
    screens.push_back(toScreen(screen));
  }
  return screens;
}

std::optional<Screen> MacWorkspace::mainScreen() const {
  NSScreen* screen = [NSScreen mainScreen];
  return screen == nil ? std::nullopt : std::optional(toScreen(screen));
}

Point MacWorkspace::mouseLocation() const {
  const NSPoint location = [NSEvent mouseLocation];
  return Point{.x = location.x, .y = location.y};
}

}  // namespace navora
