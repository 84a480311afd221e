#include "service/support/Encoding.h"

#include <cstdint>

namespace navora::service {
namespace {

int hexadecimalValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t index = 0; index < bytes.size(); index += 3) {
    std::uint32_t group = 0;
    for (std::size_t offset = 0; offset < 3; ++offset) {
      group <<= 8U;
      if (index + offset < bytes.size()) group |= static_cast<unsigned char>(bytes[index + offset]);
    }
    const std::size_t left = bytes.size() - index;
    text += digits[(group >> 18U) & 63U];
    text += digits[(group >> 12U) & 63U];
    text += left > 1 ? digits[(group >> 6U) & 63U] : '=';
    text += left > 2 ? digits[group & 63U] : '=';
  }
  return text;
}

std::string percentEncoded(std::string_view text) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : text) {
    const bool plain = (character >= 'a' && character <= 'z') ||
                       (character >= 'A' && character <= 'Z') ||
                       (character >= '0' && character <= '9') || character == '-' ||
                       character == '.' || character == '_' || character == '~';
    if (plain) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += digits[byte >> 4U];
    encoded += digits[byte & 0xFU];
  }
  return encoded;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '+') {
      decoded += ' ';
    } else if (text[index] == '%' && index + 2 < text.size() &&
               hexadecimalValue(text[index + 1]) >= 0 && hexadecimalValue(text[index + 2]) >= 0) {
      decoded += static_cast<char>(hexadecimalValue(text[index + 1]) * 16 +
                                   hexadecimalValue(text[index + 2]));
      index += 2;
    } else {
      decoded += text[index];
    }
  }
  return decoded;
}

std::map<std::string, std::string> queryParameters(std::string_view query) {
  std::map<std::string, std::string> parameters;
  while (!query.empty()) {
    const std::string_view pair = query.substr(0, query.find('&'));
    query.remove_prefix(pair.size() == query.size() ? pair.size() : pair.size() + 1);
    if (pair.empty()) continue;
    const std::size_t equals = pair.find('=');
    const std::string name = percentDecoded(pair.substr(0, equals));
    parameters[name] =
        equals == std::string_view::npos ? "" : percentDecoded(pair.substr(equals + 1));
  }
  return parameters;
}

}  // namespace navora::service
