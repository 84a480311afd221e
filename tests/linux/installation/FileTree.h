#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace navora {

// Describes a folder's tree: for each relative path the kind, the mode and the content.
using FileTree = std::map<std::string, std::string>;

// Leaves out the folder `except`.
FileTree describeTree(const std::filesystem::path& folder,
                      const std::filesystem::path& except = {});

}  // namespace navora
