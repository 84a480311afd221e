#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "platform/PlatformError.h"

namespace navora {

// Unpacks an archive into a folder that is empty so far, and into nothing else. Links are made
// after everything else, so that nothing is ever written through one. May be called on any thread.
class UpdateUnpacker {
 public:
  struct Limits {
    std::uint64_t bytes = 2ULL * 1024 * 1024 * 1024;
    std::uint64_t members = 50'000;
  };

  // Told from 0 to 1, on the thread that unpacks; `cancelled` is looked at all along.
  using Progress = std::function<void(double)>;

  static std::optional<PlatformError> unpack(const std::filesystem::path& archive,
                                             const std::filesystem::path& folder,
                                             const Limits& limits, const Progress& progress,
                                             const std::atomic<bool>& cancelled);
};

}  // namespace navora
