#pragma once

#include <atomic>
#include <functional>
#include <optional>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/Ed25519.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "platform/PlatformError.h"

namespace navora {

// Turns the archive that lies in an update folder into a version that can take the installation's
// place: verifies it, unpacks it, and makes sure that it is the version that the feed announced, so
// that nobody can pass off an older one as new. The archive is gone afterwards. May be called on
// any thread, and takes long.
std::optional<PlatformError> prepareUpdate(const UpdateFolder& folder, const AppcastEntry& entry,
                                           const Ed25519PublicKey& key,
                                           const std::function<void(double)>& progress,
                                           const std::atomic<bool>& cancelled);

}  // namespace navora
