#include "hosts/linux/updates/UpdateSettings.h"

#include <string_view>

#include "hosts/linux/installation/UpdateAddress.h"

namespace navora {
namespace {

constexpr std::string_view feedAddress = NAVORA_FEED_URL;
constexpr std::string_view releaseKey = NAVORA_UPDATE_PUBLIC_KEY;
constexpr std::string_view developmentKey = NAVORA_DEVELOPMENT_PUBLIC_KEY;
constexpr bool feedIsSigned = NAVORA_FEED_SIGNED;

std::optional<UpdateSettings> make(const std::optional<Url>& feed, std::string_view key,
                                   bool feedMustBeSigned) {
  const auto readKey = readPublicKey(key);
  if (!feed || !readKey || !isUpdateAddress(*feed)) return std::nullopt;
  return UpdateSettings{*feed, *readKey, feedMustBeSigned};
}

}  // namespace

std::optional<UpdateSettings> UpdateSettings::ofThisBuild(
    const std::optional<std::string>& service) {
  if (!feedAddress.empty()) return make(Url::parse(feedAddress), releaseKey, feedIsSigned);
  const auto origin = service ? Url::parse(*service) : std::nullopt;
  if (!origin || !isLoopbackAddress(*origin)) return std::nullopt;
  return make(origin->resolve("/updates/appcast.xml"), developmentKey, false);
}

}  // namespace navora
