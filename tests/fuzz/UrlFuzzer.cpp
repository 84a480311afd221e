#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "origin/DesktopOrigin.h"
#include "support/FatalError.h"
#include "support/Url.h"

namespace {

void require(bool condition, int line) {
  if (!condition) navora::fatalError("A property of URLs does not hold", "UrlFuzzer", line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using navora::DesktopOrigin;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto resolved = DesktopOrigin::production().resolve(text);
  const auto configured = DesktopOrigin::configured(text);
  require(configured.host().has_value() && !configured.user() && !configured.query(), __LINE__);
  const auto encoded =
      DesktopOrigin::configured(text, [](const std::string& host) { return std::optional(host); });
  require(encoded.host().has_value() && !encoded.user() && !encoded.query(), __LINE__);
  const auto url = navora::Url::parse(text);
  require(url.has_value() == resolved.has_value(), __LINE__);
  if (url) {
    require(navora::Url::parse(url->string()) == url, __LINE__);
    require(url->textAsParsed() == text, __LINE__);
    const auto rebuilt = navora::Url::fromComponents(url->components());
    require(rebuilt && rebuilt->components() == url->components(), __LINE__);
    require(resolved->scheme().has_value(), __LINE__);
    require(url->appendingPathComponent(text).host() == url->host(), __LINE__);
  }
  return 0;
}
