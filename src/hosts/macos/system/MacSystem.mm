#include "hosts/macos/system/MacSystem.h"

#include <utility>

#import <AppKit/AppKit.h>

#include "hosts/macos/system/Conversions.h"
#include "support/Lifetime.h"

namespace navora {

namespace {

// Whether +resetSystemTimeZone is running on this thread. It may post the notification of a change
// itself; without the flag, an observer that reads the time zone would cause the next one.
thread_local bool isResettingTimeZone = false;

class MacObserverToken final : public ObserverToken {
 public:
  MacObserverToken(NSNotificationCenter* center, NSNotificationName name,
                   std::function<void()> callback)
      : center_(center) {
    // A block already in the main queue runs even after its observer was removed.
    const std::function<void()> guarded = lifetime_.guard(std::move(callback));
    // Without a queue the block runs on the thread that posts the notification, before it goes on.
    observer_ = [center addObserverForName:name
                                    object:nil
                                     queue:nil
                                usingBlock:^(NSNotification*) {
                                  if (isResettingTimeZone) return;
                                  dispatch_async(dispatch_get_main_queue(), ^{
                                    guarded();
                                  });
                                }];
  }
  ~MacObserverToken() override { [center_ removeObserver:observer_]; }
  MacObserverToken(const MacObserverToken&) = delete;
  MacObserverToken& operator=(const MacObserverToken&) = delete;

 private:
  NSNotificationCenter* center_;
  id<NSObject> observer_;
  Lifetime lifetime_;
};

}  // namespace

std::optional<std::string> MacSystem::environmentVariable(const std::string& name) const {
  NSString* value = [NSProcessInfo processInfo].environment[toNSString(name)];
  return value == nil ? std::nullopt : std::optional(toString(value));
}

std::vector<std::string> MacSystem::preferredLanguages() const {
  std::vector<std::string> languages;
  for (NSString* language in [NSLocale preferredLanguages]) {
    languages.push_back(toString(language));
  }
  return languages;
}

std::string MacSystem::timeZoneIdentifier() const {
  // Foundation caches the zone until it is reset.
  isResettingTimeZone = true;
  [NSTimeZone resetSystemTimeZone];
  isResettingTimeZone = false;
  return toString([NSTimeZone systemTimeZone].name);
}

Date MacSystem::now() const {
  return std::chrono::system_clock::now();
}

// Foundation encodes host names itself since macOS 14; earlier versions reject the address.
std::optional<std::string> MacSystem::asciiHostName(const std::string& host) const {
  const auto url = toUrl([NSURL URLWithString:toNSString("https://" + host + "/")]);
  auto encoded = url ? url->host() : std::nullopt;
  // Percent-encoded instead.
  if (!encoded || encoded->find('%') != std::string::npos) return std::nullopt;
  return encoded;
}

std::string MacSystem::randomUuid() const {
  return toString([NSUUID UUID].UUIDString.lowercaseString);
}

void MacSystem::log(const std::string& line) const {
  NSLog(@"%@", toNSString(line));
}

void MacSystem::debug(DebugArea area, const std::string& line) const {
  static const DebugRequest request = [this] {
    auto parsed = parseDebugRequest(environmentVariable("NAVORA_DEBUG").value_or(""));
    if (const auto message = unknownDebugAreasMessage(parsed)) log("Navora: " + *message);
    return parsed;
  }();
  if (request.areas.contains(area)) log(std::string(debugAreaName(area)) + ": " + line);
}

std::unique_ptr<ObserverToken> MacSystem::observeTimeZoneChange(std::function<void()> callback) {
  return std::make_unique<MacObserverToken>([NSNotificationCenter defaultCenter],
                                            NSSystemTimeZoneDidChangeNotification,
                                            std::move(callback));
}

std::unique_ptr<ObserverToken> MacSystem::observeWake(std::function<void()> callback) {
  return std::make_unique<MacObserverToken>([NSWorkspace sharedWorkspace].notificationCenter,
                                            NSWorkspaceDidWakeNotification, std::move(callback));
}

}  // namespace navora
