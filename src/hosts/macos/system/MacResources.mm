#include "hosts/macos/system/MacResources.h"

#include "hosts/macos/system/Conversions.h"
#include "support/Text.h"

namespace navora {

std::optional<std::string> MacResources::read(std::string_view name,
                                              std::string_view extension) const {
  NSURL* url = [[NSBundle mainBundle] URLForResource:toNSString(name)
                                       withExtension:toNSString(extension)];
  NSData* data = url == nil ? nil : [NSData dataWithContentsOfURL:url];
  if (data == nil) return std::nullopt;
  std::string text(static_cast<const char*>(data.bytes), data.length);
  if (!isValidUtf8(text)) return std::nullopt;
  return text;
}

}  // namespace navora
