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

// Conversions between the core's values and Foundation's. Objects that a framework hands out are
// accepted as nil, because frameworks return nil even where their headers declare nonnull.

// Returns the empty string for invalid UTF-8.
NSString* toNSString(std::string_view text);
// Returns UTF-8, with unpaired surrogates replaced; the empty string for nil.
std::string toString(NSString* _Nullable text);

// Returns nil if Foundation rejects the address.
NSURL* _Nullable toNSURL(const Url& url);
std::optional<Url> toUrl(NSURL* _Nullable url);

NSURL* toFileURL(const std::filesystem::path& path);
NSArray<NSURL*>* toFileURLs(const std::vector<std::filesystem::path>& paths);
std::filesystem::path toPath(NSURL* fileUrl);

// Reports a load that a policy decision interrupted as PlatformError::cancelledCode, as the core
// expects.
PlatformError toPlatformError(NSError* _Nullable error);
// Converts an errno value.
PlatformError platformErrorFromErrno(int code);

}  // namespace navora

NS_ASSUME_NONNULL_END
