#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#import <Foundation/Foundation.h>

#include "platform/PlatformError.h"
#include "support/Url.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Between the core's values and Foundation's. Foundation's side may be nil wherever a framework
// hands it out, whatever its headers promise.

// Text that is not UTF-8 becomes the empty string.
NSString* toNSString(std::string_view text);
// UTF-8; a surrogate without its partner is replaced. Nil gives the empty string.
std::string toString(NSString* _Nullable text);

// Nil when Foundation does not accept the address.
NSURL* _Nullable toNSURL(const Url& url);
std::optional<Url> toUrl(NSURL* _Nullable url);

NSURL* toFileURL(const std::filesystem::path& path);
NSArray<NSURL*>* toFileURLs(const std::vector<std::filesystem::path>& paths);
std::filesystem::path toPath(NSURL* fileUrl);

// With the code that the core relies on for loads which our own decisions stopped.
PlatformError toPlatformError(NSError* _Nullable error);

}  // namespace navora

NS_ASSUME_NONNULL_END
