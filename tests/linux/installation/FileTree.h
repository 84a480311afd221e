#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace navora {

// What lies below a folder: for each path relative to it the kind, the mode, and the content.
using FileTree = std::map<std::string, std::string>;

// Without what lies in the folder `except`.
FileTree describeTree(const std::filesystem::path& folder,
                      const std::filesystem::path& except = {});

}  // namespace navora
