#include "service/support/ZipArchive.h"

namespace navora::service {
namespace {

constexpr std::uint16_t versionNeeded = 20;
constexpr std::uint16_t utf8Names = 1U << 11U;
// 1980-01-01, the earliest date of the format. A constant, so that archives of equal notes are
// equal.
constexpr std::uint16_t dosDate = (1U << 5U) | 1U;

void append16(std::string& bytes, std::uint32_t value) {
  bytes += static_cast<char>(value & 0xFFU);
  bytes += static_cast<char>((value >> 8U) & 0xFFU);
}

void append32(std::string& bytes, std::uint32_t value) {
  append16(bytes, value & 0xFFFFU);
  append16(bytes, value >> 16U);
}

std::uint32_t checksumOf(std::string_view content) {
  std::uint32_t checksum = 0xFFFFFFFFU;
  for (const char character : content) {
    checksum ^= static_cast<unsigned char>(character);
    for (int bit = 0; bit < 8; ++bit) {
      checksum = (checksum >> 1U) ^ ((checksum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
  }
  return ~checksum;
}

// Appends the fields that a file's local header shares with its central directory entry.
void appendDescription(std::string& bytes, std::uint32_t checksum, std::uint32_t size,
                       std::size_t nameSize) {
  append16(bytes, versionNeeded);
  append16(bytes, utf8Names);
  append16(bytes, 0);  // stored
  append16(bytes, 0);  // time of day
  append16(bytes, dosDate);
  append32(bytes, checksum);
  append32(bytes, size);
  append32(bytes, size);
  append16(bytes, static_cast<std::uint32_t>(nameSize));
  append16(bytes, 0);  // extra field
}

}  // namespace

void ZipArchive::add(std::string_view name, std::string_view content) {
  const Entry entry{std::string(name), checksumOf(content),
                    static_cast<std::uint32_t>(content.size()),
                    static_cast<std::uint32_t>(files_.size())};
  append32(files_, 0x04034B50U);
  appendDescription(files_, entry.checksum, entry.size, name.size());
  files_ += name;
  files_ += content;
  entries_.push_back(entry);
}

std::string ZipArchive::bytes() const {
  std::string directory;
  for (const Entry& entry : entries_) {
    append32(directory, 0x02014B50U);
    append16(directory, versionNeeded);
    appendDescription(directory, entry.checksum, entry.size, entry.name.size());
    append16(directory, 0);  // comment
    append16(directory, 0);  // disk
    append16(directory, 0);  // internal attributes
    append32(directory, 0);  // external attributes
    append32(directory, entry.offset);
    directory += entry.name;
  }
  std::string archive = files_ + directory;
  append32(archive, 0x06054B50U);
  append16(archive, 0);
  append16(archive, 0);
  append16(archive, static_cast<std::uint32_t>(entries_.size()));
  append16(archive, static_cast<std::uint32_t>(entries_.size()));
  append32(archive, static_cast<std::uint32_t>(directory.size()));
  append32(archive, static_cast<std::uint32_t>(files_.size()));
  append16(archive, 0);
  return archive;
}

}  // namespace navora::service
