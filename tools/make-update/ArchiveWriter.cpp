#include "make-update/ArchiveWriter.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

#include <archive.h>
#include <archive_entry.h>

#include "hosts/linux/installation/ArchiveReader.h"
#include "hosts/linux/installation/Installation.h"

namespace navora {
namespace {

constexpr mode_t fileMode = 0644;
constexpr mode_t executableMode = 0755;

struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};
struct FreeArchive {
  void operator()(archive* writer) const { archive_write_free(writer); }
};
using Failure = std::optional<std::string>;

class Writer {
 public:
  Failure open(const std::filesystem::path& file) {
    archive_write_set_format_pax_restricted(archive_.get());
    archive_write_add_filter_zstd(archive_.get());
    return check(archive_write_open_filename(archive_.get(), file.c_str()));
  }

  Failure addText(const std::string& name, const std::string& text) {
    if (auto failure =
            addHeader(name, AE_IFREG, fileMode, static_cast<la_int64_t>(text.size()), ""))
      return failure;
    return addData(text.data(), text.size());
  }

  Failure addFile(const std::string& name, const std::filesystem::directory_entry& file) {
    std::error_code error;
    const auto permissions = file.status(error).permissions();
    const bool isExecutable =
        (permissions & std::filesystem::perms::owner_exec) != std::filesystem::perms::none;
    const auto size = file.file_size(error);
    std::ifstream stream(file.path(), std::ios::binary);
    if (error || !stream) return file.path().string() + " cannot be read";
    if (auto failure = addHeader(name, AE_IFREG, isExecutable ? executableMode : fileMode,
                                 static_cast<la_int64_t>(size), "")) {
      return failure;
    }
    std::array<char, 64 * 1024> buffer{};
    std::uintmax_t added = 0;
    while (stream.read(buffer.data(), buffer.size()) || stream.gcount() > 0) {
      const auto read = static_cast<std::size_t>(stream.gcount());
      if (auto failure = addData(buffer.data(), read)) return failure;
      added += read;
    }
    // libarchive would pad the member with zeros.
    if (added != size) return file.path().string() + " cannot be read to its end";
    return std::nullopt;
  }

  Failure addLink(const std::string& name, const std::filesystem::path& target) {
    return addHeader(name, AE_IFLNK, executableMode, 0, target.string());
  }

  Failure close() { return check(archive_write_close(archive_.get())); }

 private:
  Failure addHeader(const std::string& name, unsigned type, mode_t mode, la_int64_t size,
                    const std::string& target) {
    const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_filetype(entry.get(), type);
    archive_entry_set_perm(entry.get(), mode);
    archive_entry_set_size(entry.get(), size);
    if (!target.empty()) archive_entry_set_symlink(entry.get(), target.c_str());
    return check(archive_write_header(archive_.get(), entry.get()));
  }

  Failure addData(const char* data, std::size_t size) {
    if (archive_write_data(archive_.get(), data, size) == static_cast<la_ssize_t>(size))
      return std::nullopt;
    return check(ARCHIVE_FATAL);
  }

  Failure check(int status) {
    if (status == ARCHIVE_OK) return std::nullopt;
    const char* reason = archive_error_string(archive_.get());
    return reason == nullptr ? "The archive cannot be written" : std::string(reason);
  }

  std::unique_ptr<archive, FreeArchive> archive_{archive_write_new()};
};

Failure addEntry(Writer& writer, const std::filesystem::directory_entry& entry,
                 const std::string& name) {
  std::error_code error;
  if (entry.is_symlink(error)) {
    const auto target = std::filesystem::read_symlink(entry.path(), error);
    return error ? entry.path().string() + " cannot be read" : writer.addLink(name, target);
  }
  if (entry.is_regular_file(error)) return writer.addFile(name, entry);
  if (entry.is_directory(error)) return std::nullopt;
  return entry.path().string() + " is neither a file nor a folder nor a link";
}

// Reads the archive as the updater does, which refuses some members that can be packed.
Failure readBack(const std::filesystem::path& archive) {
  auto reader = ArchiveReader::open(archive);
  if (!reader) return reader.error();
  while (true) {
    const auto member = reader->next();
    if (!member) return member.error();
    if (!*member) return std::nullopt;
  }
}

}  // namespace

std::optional<std::string> writeArchive(const std::filesystem::path& installation,
                                        const std::string& version,
                                        const std::filesystem::path& archive) {
  std::error_code error;
  std::vector<std::filesystem::directory_entry> entries;
  for (auto entry = std::filesystem::recursive_directory_iterator(installation, error);
       !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error))
    entries.push_back(*entry);
  if (error) return installation.string() + " cannot be read: " + error.message();
  std::ranges::sort(entries, {}, [](const auto& entry) { return entry.path(); });

  Writer writer;
  if (auto failure = writer.open(archive)) return failure;
  const std::string folder = "navora/";
  if (auto failure =
          writer.addText(folder + Installation::recordName, Installation::record(version))) {
    return failure;
  }
  for (const auto& entry : entries) {
    const auto relative = entry.path().lexically_relative(installation);
    if (relative == Installation::recordName) continue;
    if (auto failure = addEntry(writer, entry, folder + relative.string())) return failure;
  }
  if (auto failure = writer.close()) return failure;
  return readBack(archive);
}

}  // namespace navora
