#pragma once

#include <atomic>
#include <functional>
#include <optional>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/Ed25519.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "platform/PlatformError.h"

namespace navora {

// Verifies and unpacks the archive in an update folder, deletes the archive, and checks that it
// held the version that the feed announced, which prevents downgrades. Returns the error if a step
// fails. `progress` is called with values from 0 to 1, `cancelled` is polled while unpacking. May
// be called on any thread; takes seconds to minutes.
std::optional<PlatformError> prepareUpdate(const UpdateFolder& folder, const AppcastEntry& entry,
                                           const Ed25519PublicKey& key,
                                           const std::function<void(double)>& progress,
                                           const std::atomic<bool>& cancelled);

}  // namespace navora
