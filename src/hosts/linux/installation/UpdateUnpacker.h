#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "platform/PlatformError.h"

namespace navora {

// Unpacks an archive into an empty folder, never outside it. Links are made last, so that no file
// is written through one. May be called on any thread.
class UpdateUnpacker {
 public:
  struct Limits {
    std::uint64_t bytes = 2ULL * 1024 * 1024 * 1024;
    std::uint64_t members = 50'000;
  };

  // Called on the unpacking thread with values from 0 to 1.
  using Progress = std::function<void(double)>;

  // Returns the error if unpacking failed or `cancelled` became true.
  static std::optional<PlatformError> unpack(const std::filesystem::path& archive,
                                             const std::filesystem::path& folder,
                                             const Limits& limits, const Progress& progress,
                                             const std::atomic<bool>& cancelled);
};

}  // namespace navora
