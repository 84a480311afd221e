#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace navora::service {

// Returns the content of a file, or nullopt if it cannot be read.
std::optional<std::string> readFile(const std::filesystem::path& path);

// Returns the media type for a file name's extension.
std::string mediaType(const std::filesystem::path& path);

// Replaces each "{{name}}" that has a value; leaves others unchanged.
std::string filledTemplate(std::string text, const std::map<std::string, std::string>& values);

// Returns whether `path` is relative and names a file below its directory: no "..", no empty
// component, no hidden file.
bool isPlainRelativePath(const std::string& path);

}  // namespace navora::service
