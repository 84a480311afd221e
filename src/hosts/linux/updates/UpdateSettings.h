#pragma once

#include <optional>
#include <string>

#include "hosts/linux/installation/Ed25519.h"
#include "support/Url.h"

namespace navora {

// The feed of releases and the key that their archives must be signed with.
struct UpdateSettings {
  Url feed;
  Ed25519PublicKey publicKey{};
  // Refuse a feed without a valid signature over the whole feed.
  bool feedMustBeSigned = false;

  // Returns the settings that were compiled in. A build without a feed uses the development service
  // at `service`, if that is a loopback address, with the development key; otherwise std::nullopt.
  static std::optional<UpdateSettings> ofThisBuild(const std::optional<std::string>& service);
};

}  // namespace navora
