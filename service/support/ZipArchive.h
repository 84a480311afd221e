#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace navora::service {

// Builds a ZIP archive in memory. Files are stored uncompressed; names are UTF-8 paths with "/" as
// separator.
class ZipArchive {
 public:
  void add(std::string_view name, std::string_view content);

  // Returns the whole archive with the files added so far.
  std::string bytes() const;

 private:
  struct Entry {
    std::string name;
    std::uint32_t checksum;
    std::uint32_t size;
    std::uint32_t offset;
  };

  std::string files_;
  std::vector<Entry> entries_;
};

}  // namespace navora::service
