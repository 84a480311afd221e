#include "service/support/Files.h"

#include <fstream>
#include <sstream>

namespace navora::service {

std::optional<std::string> readFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream content;
  if (!(content << stream.rdbuf()) && std::filesystem::file_size(path, error) > 0) {
    return std::nullopt;
  }
  return content.str();
}

std::string mediaType(const std::filesystem::path& path) {
  static const std::map<std::string, std::string> types{{".html", "text/html; charset=utf-8"},
                                                        {".css", "text/css; charset=utf-8"},
                                                        {".js", "text/javascript; charset=utf-8"},
                                                        {".json", "application/json"},
                                                        {".txt", "text/plain; charset=utf-8"},
                                                        {".svg", "image/svg+xml"},
                                                        {".png", "image/png"},
                                                        {".pdf", "application/pdf"},
                                                        {".zip", "application/zip"}};
  const auto type = types.find(path.extension().string());
  return type == types.end() ? "application/octet-stream" : type->second;
}

std::string filledTemplate(std::string text, const std::map<std::string, std::string>& values) {
  std::size_t position = 0;
  while ((position = text.find("{{", position)) != std::string::npos) {
    const std::size_t end = text.find("}}", position);
    if (end == std::string::npos) break;
    const auto value = values.find(text.substr(position + 2, end - position - 2));
    if (value == values.end()) {
      position += 2;
      continue;
    }
    // Continue after the value: values are not searched for placeholders.
    text.replace(position, end + 2 - position, value->second);
    position += value->second.size();
  }
  return text;
}

bool isPlainRelativePath(const std::string& path) {
  if (path.empty() || path.back() == '/' || path.find('\0') != std::string::npos ||
      path.find('\\') != std::string::npos) {
    return false;
  }
  std::istringstream parts(path);
  for (std::string part; std::getline(parts, part, '/');) {
    if (part.empty() || part.front() == '.') return false;
  }
  return true;
}

}  // namespace navora::service
