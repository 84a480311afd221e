#include "hosts/linux/installation/ArchiveSignature.h"

#include <cerrno>
#include <cstddef>
#include <span>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "hosts/linux/installation/UpdateError.h"
#include "platform/FileDescriptor.h"

namespace navora {
namespace {

// Maps a file's content into memory.
class MappedFile {
 public:
  MappedFile(const FileDescriptor& file, std::size_t length)
      : bytes_(::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file.get(), 0)), length_(length) {
    if (*this) ::madvise(bytes_, length_, MADV_SEQUENTIAL);
  }
  ~MappedFile() {
    if (*this) ::munmap(bytes_, length_);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  explicit operator bool() const { return bytes_ != MAP_FAILED; }
  std::span<const unsigned char> bytes() const {
    return {static_cast<const unsigned char*>(bytes_), length_};
  }

 private:
  void* bytes_;
  std::size_t length_;
};

}  // namespace

std::optional<PlatformError> verifyArchive(const std::filesystem::path& file, std::uint64_t length,
                                           const Ed25519Signature& signature,
                                           const Ed25519PublicKey& key) {
  const auto systemFailure = [] {
    return systemUpdateError(UpdateStage::verification, "The archive cannot be read", errno);
  };
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status{};
  if (!descriptor || ::fstat(descriptor.get(), &status) != 0) return systemFailure();
  if (length == 0 || static_cast<std::uint64_t>(status.st_size) != length)
    return updateError(UpdateStage::verification, "The archive has another length than announced");
  const MappedFile content(descriptor, static_cast<std::size_t>(length));
  if (!content) return systemFailure();
  if (!isSignedBy(key, content.bytes(), signature))
    return updateError(UpdateStage::verification, "The signature of the archive is not valid");
  return std::nullopt;
}

}  // namespace navora
