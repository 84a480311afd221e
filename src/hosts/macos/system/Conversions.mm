#include "hosts/macos/system/Conversions.h"

namespace navora {

namespace {

// WebKit's error for a load that a policy decision cancelled or turned into a download. Both values
// are documented, but declared as constants only in the legacy WebKit API.
NSString* const webKitErrorDomain = @"WebKitErrorDomain";
constexpr NSInteger frameLoadInterruptedByPolicyChange = 102;

bool isInterruptedByPolicy(NSError* error) {
  return error.code == frameLoadInterruptedByPolicyChange &&
         [error.domain isEqualToString:webKitErrorDomain];
}

bool isHighSurrogate(unichar unit) {
  return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(unichar unit) {
  return (unit & 0xFC00) == 0xDC00;
}

// The lossy conversion of the system does not say what it makes of unpaired surrogates.
NSString* replacingUnpairedSurrogates(NSString* text) {
  constexpr unichar replacement = 0xFFFD;
  std::vector<unichar> units(text.length);
  [text getCharacters:units.data() range:NSMakeRange(0, units.size())];
  for (std::size_t index = 0; index < units.size(); ++index) {
    if (isHighSurrogate(units[index]) && index + 1 < units.size() &&
        isLowSurrogate(units[index + 1])) {
      ++index;
    } else if (isHighSurrogate(units[index]) || isLowSurrogate(units[index])) {
      units[index] = replacement;
    }
  }
  return [NSString stringWithCharacters:units.data() length:units.size()];
}

}  // namespace

NSString* toNSString(std::string_view text) {
  NSString* result = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
  return result != nil ? result : @"";
}

std::string toString(NSString* _Nullable text) {
  if (text == nil) return {};
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding];
  if (data == nil) {
    data = [replacingUnpairedSurrogates(text) dataUsingEncoding:NSUTF8StringEncoding];
  }
  return data.length == 0 ? std::string()
                          : std::string(static_cast<const char*>(data.bytes), data.length);
}

NSURL* _Nullable toNSURL(const Url& url) {
  return [NSURL URLWithString:toNSString(url.string())];
}

std::optional<Url> toUrl(NSURL* _Nullable url) {
  if (url == nil) return std::nullopt;
  return Url::parse(toString(url.absoluteString));
}

NSURL* toFileURL(const std::filesystem::path& path) {
  return [NSURL fileURLWithPath:toNSString(path.string())];
}

NSArray<NSURL*>* toFileURLs(const std::vector<std::filesystem::path>& paths) {
  NSMutableArray<NSURL*>* urls = [NSMutableArray array];
  for (const std::filesystem::path& path : paths) {
    [urls addObject:toFileURL(path)];
  }
  return urls;
}

std::filesystem::path toPath(NSURL* fileUrl) {
  return std::filesystem::path(toString(fileUrl.path));
}

PlatformError toPlatformError(NSError* _Nullable error) {
  return PlatformError{
      .domain = toString(error.domain),
      .code = isInterruptedByPolicy(error) ? PlatformError::cancelledCode
                                           : static_cast<int>(error.code),
      .localizedDescription = toString(error.localizedDescription),
  };
}

PlatformError platformErrorFromErrno(int code) {
  return toPlatformError([NSError errorWithDomain:NSPOSIXErrorDomain code:code userInfo:nil]);
}

}  // namespace navora
