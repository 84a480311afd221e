#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "hosts/linux/installation/UpdateUnpacker.h"
#include "support/FatalError.h"
#include "tests/support/Files.h"

namespace {

void require(bool condition, int line) {
  if (!condition) navora::fatalError("A property of archives does not hold", "ArchiveFuzzer", line);
}

// In memory where possible: each input creates and removes a tree of files.
std::filesystem::path parentDirectory() {
  return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
}

// Checks that nothing below `root` refers to a file outside it or can be changed by other users.
void requireInside(const std::filesystem::path& root) {
  std::error_code error;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const auto status = entry.symlink_status();
    require(std::filesystem::is_directory(status) || std::filesystem::is_regular_file(status) ||
                std::filesystem::is_symlink(status),
            __LINE__);
    require((status.permissions() &
             (std::filesystem::perms::set_uid | std::filesystem::perms::set_gid |
              std::filesystem::perms::others_write)) == std::filesystem::perms::none ||
                std::filesystem::is_symlink(status),
            __LINE__);
    if (!std::filesystem::is_symlink(status)) continue;
    const auto end = std::filesystem::weakly_canonical(entry.path(), error);
    if (!error) require(end.string().starts_with(root.string()), __LINE__);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const navora::TemporaryDirectory folder("navora-archive", parentDirectory());
  static const auto archive = folder.path() / "archive";
  static const auto target = folder.path() / "target";
  std::error_code error;
  std::filesystem::remove_all(target, error);
  std::filesystem::create_directory(target, error);
  std::ofstream(archive, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const navora::UpdateUnpacker::Limits limits{.bytes = 1'000'000, .members = 100};
  const std::atomic<bool> cancelled = false;
  double last = 0;
  const auto failure = navora::UpdateUnpacker::unpack(
      archive, target, limits,
      [&last](double progress) {
        require(progress >= last && progress <= 1, __LINE__);
        last = progress;
      },
      cancelled);
  require(!failure || !failure->localizedDescription.empty(), __LINE__);
  require(failure || last == 1, __LINE__);
  requireInside(target);
  std::size_t beside = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
    beside += entry.path() == archive || entry.path() == target ? 0U : 1U;
  require(beside == 0, __LINE__);
  return 0;
}
