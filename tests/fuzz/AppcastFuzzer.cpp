#include <cstddef>
#include <cstdint>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/AppcastSelection.h"
#include "hosts/linux/installation/VersionOrder.h"
#include "support/FatalError.h"

namespace {

void require(bool condition, int line) {
  if (!condition) navora::fatalError("A property of feeds does not hold", "AppcastFuzzer", line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using navora::AppcastSelection;
  static const auto address = navora::Url::parse("https://updates.example/appcast.xml");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto entries = navora::readAppcast(text, *address);
  if (!entries) {
    require(!entries.error().empty(), __LINE__);
    return 0;
  }
  for (const auto& entry : *entries) {
    require(!entry.version.empty() && entry.version.find('/') == std::string::npos, __LINE__);
    require(entry.archive || entry.link, __LINE__);
    require(!entry.archive || (entry.archive->length > 0 && entry.archive->url.scheme()), __LINE__);
    require(navora::compareVersions(entry.version, entry.version) == 0, __LINE__);
  }
  const AppcastSelection::Conditions conditions{.currentVersion = "1.0",
                                                .systemVersion = "2.36",
                                                .now = navora::dateFromSecondsSince1970(0),
                                                .rolloutGroup = 3,
                                                .userInitiated = size % 2 == 0};
  if (const auto chosen = AppcastSelection::choose(*entries, conditions)) {
    require(navora::compareVersions(chosen->version, "1.0") > 0, __LINE__);
    AppcastSelection::isInformational(*chosen, "1.0");
  }
  return 0;
}
