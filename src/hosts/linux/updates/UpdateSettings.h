#pragma once

#include <optional>
#include <string>

#include "hosts/linux/installation/Ed25519.h"
#include "support/Url.h"

namespace navora {

// Where this build looks for releases, and whose releases it takes.
struct UpdateSettings {
  Url feed;
  Ed25519PublicKey publicKey{};
  // A feed that is not signed as a whole is refused.
  bool feedMustBeSigned = false;

  // Of the build. One that was given no feed asks the development service at `service`, if that is
  // on this machine, and takes what was signed with the key for development; otherwise it has none.
  static std::optional<UpdateSettings> ofThisBuild(const std::optional<std::string>& service);
};

}  // namespace navora
