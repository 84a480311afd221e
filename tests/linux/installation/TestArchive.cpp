#include "linux/installation/TestArchive.h"

#include <memory>

#include <archive.h>
#include <archive_entry.h>

namespace navora {
namespace {

struct FreeArchive {
  void operator()(archive* writer) const { archive_write_free(writer); }
};
struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

unsigned fileType(TestMember::Kind kind) {
  switch (kind) {
    case TestMember::Kind::file:
    case TestMember::Kind::hardLink:
      return AE_IFREG;
    case TestMember::Kind::folder:
      return AE_IFDIR;
    case TestMember::Kind::symbolicLink:
      return AE_IFLNK;
    case TestMember::Kind::fifo:
      return AE_IFIFO;
    case TestMember::Kind::characterDevice:
      return AE_IFCHR;
    case TestMember::Kind::blockDevice:
      return AE_IFBLK;
    case TestMember::Kind::socket:
      return AE_IFSOCK;
  }
  return AE_IFREG;
}

void addFilter(archive* writer, TestCompression compression) {
  switch (compression) {
    case TestCompression::none:
      archive_write_add_filter_none(writer);
      break;
    case TestCompression::gzip:
      archive_write_add_filter_gzip(writer);
      break;
    case TestCompression::xz:
      archive_write_add_filter_xz(writer);
      break;
    case TestCompression::zstd:
      archive_write_add_filter_zstd(writer);
      break;
    case TestCompression::bzip2:
      archive_write_add_filter_bzip2(writer);
      break;
  }
}

bool writeMember(archive* writer, const TestMember& member) {
  const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
  archive_entry_set_pathname(entry.get(), member.path.c_str());
  archive_entry_set_filetype(entry.get(), fileType(member.kind));
  archive_entry_set_perm(entry.get(), member.mode);
  archive_entry_set_size(entry.get(), static_cast<la_int64_t>(member.content.size()));
  if (member.kind == TestMember::Kind::symbolicLink)
    archive_entry_set_symlink(entry.get(), member.target.c_str());
  if (member.kind == TestMember::Kind::hardLink)
    archive_entry_set_hardlink(entry.get(), member.target.c_str());
  return archive_write_header(writer, entry.get()) == ARCHIVE_OK &&
         archive_write_data(writer, member.content.data(), member.content.size()) ==
             static_cast<la_ssize_t>(member.content.size());
}

}  // namespace

bool writeTestArchive(const std::filesystem::path& file, const std::vector<TestMember>& members,
                      TestCompression compression) {
  const std::unique_ptr<archive, FreeArchive> writer(archive_write_new());
  archive_write_set_format_pax_restricted(writer.get());
  addFilter(writer.get(), compression);
  if (archive_write_open_filename(writer.get(), file.c_str()) != ARCHIVE_OK) return false;
  for (const TestMember& member : members) {
    if (!writeMember(writer.get(), member)) return false;
  }
  return archive_write_close(writer.get()) == ARCHIVE_OK;
}

}  // namespace navora
