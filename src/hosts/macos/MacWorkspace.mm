#include "hosts/macos/MacWorkspace.h"

#import <AppKit/AppKit.h>

#include "hosts/macos/Conversions.h"

namespace navora {

void MacWorkspace::open(const Url& url) {
  if (NSURL* address = toNSURL(url)) [[NSWorkspace sharedWorkspace] openURL:address];
}

}  // namespace navora
