#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace navora {

// What lies below a folder: for each path relative to it the kind, the mode, and the content.
using FileTree = std::map<std::string, std::string>;

// Without what lies in the folder `except`.
FileTree describeTree(const std::filesystem::path& folder,
                      const std::filesystem::path& except = {});

std::string readFile(const std::filesystem::path& file);
// With the folders above it.
void writeFile(const std::filesystem::path& file, std::string_view content, mode_t mode = 0644);

}  // namespace navora
