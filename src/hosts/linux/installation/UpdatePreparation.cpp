#include "hosts/linux/installation/UpdatePreparation.h"

#include <filesystem>
#include <string>
#include <system_error>

#include <unistd.h>

#include "hosts/linux/installation/ArchiveSignature.h"
#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateError.h"
#include "hosts/linux/installation/UpdateUnpacker.h"

namespace navora {
namespace {

std::optional<PlatformError> failure(const std::string& description) {
  return updateError(UpdateStage::verification, description);
}

bool holdsOnlyTheVersion(const UpdateFolder& folder) {
  std::error_code error;
  int entries = 0;
  std::filesystem::directory_iterator entry(folder.unpacked(), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (entry->path() != folder.version()) return false;
    ++entries;
  }
  return !error && entries == 1;
}

std::optional<PlatformError> checkVersion(const UpdateFolder& folder, const std::string& version) {
  const auto unpacked = Installation::at(folder.version());
  if (!unpacked || !holdsOnlyTheVersion(folder)) return failure("The archive holds no Navora");
  if (unpacked->version() != version)
    return failure("The archive holds version " + unpacked->version() + " in place of " + version);
  std::error_code error;
  if (!std::filesystem::is_regular_file(unpacked->executable(), error) ||
      ::access(unpacked->executable().c_str(), X_OK) != 0) {
    return failure("The archive holds no program");
  }
  return std::nullopt;
}

}  // namespace

std::optional<PlatformError> prepareUpdate(const UpdateFolder& folder, const AppcastEntry& entry,
                                           const Ed25519PublicKey& key,
                                           const std::function<void(double)>& progress,
                                           const std::atomic<bool>& cancelled) {
  if (!entry.archive) return failure("The release has no archive");
  if (auto error =
          verifyArchive(folder.archive(), entry.archive->length, entry.archive->signature, key)) {
    return error;
  }
  std::error_code error;
  std::filesystem::create_directory(folder.unpacked(), error);
  if (auto unpacking =
          UpdateUnpacker::unpack(folder.archive(), folder.unpacked(), {}, progress, cancelled)) {
    return unpacking;
  }
  std::filesystem::remove(folder.archive(), error);
  return checkVersion(folder, entry.version);
}

}  // namespace navora
