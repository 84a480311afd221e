#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace navora::service {

/// The content of a file, or nothing when it cannot be read.
std::optional<std::string> readFile(const std::filesystem::path& path);

/// The media type that a file name's extension stands for.
std::string mediaType(const std::filesystem::path& path);

/// Replaces each "{{name}}" that has a value; others stay as they are.
std::string filledTemplate(std::string text, const std::map<std::string, std::string>& values);

/// A relative path that names a file below a directory: no "..", no empty part, no hidden file.
bool isPlainRelativePath(const std::string& path);

}  // namespace navora::service
