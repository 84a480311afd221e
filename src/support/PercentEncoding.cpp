#include "support/PercentEncoding.h"

namespace navora {
namespace {

constexpr std::string_view segmentMarks = "-._~!$&'()*+,;=:@";

bool isAsciiLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

std::string encodedExcept(std::string_view text, std::string_view marks) {
  std::string result;
  result.reserve(text.size());
  for (const char byte : text) {
    if (isAsciiLetterOrDigit(byte) || marks.find(byte) != std::string_view::npos) {
      result.push_back(byte);
    } else {
      appendPercentTriplet(result, byte);
    }
  }
  return result;
}

}  // namespace

std::optional<unsigned> hexadecimalValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a') + 10;
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A') + 10;
  return std::nullopt;
}

std::string percentEncoded(std::string_view text) {
  return encodedExcept(text, {});
}

std::string percentEncodedPathSegment(std::string_view text) {
  return encodedExcept(text, segmentMarks);
}

std::string percentDecoded(std::string_view text) {
  std::string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (startsWithPercentTriplet(text.substr(index))) {
      const auto value =
          *hexadecimalValue(text[index + 1]) * 16 + *hexadecimalValue(text[index + 2]);
      result.push_back(static_cast<char>(value));
      index += 2;
    } else {
      result.push_back(text[index]);
    }
  }
  return result;
}

bool startsWithPercentTriplet(std::string_view text) {
  return text.size() >= 3 && text[0] == '%' && hexadecimalValue(text[1]) &&
         hexadecimalValue(text[2]);
}

void appendPercentTriplet(std::string& text, char byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  text.push_back('%');
  text.push_back(digits[value >> 4U]);
  text.push_back(digits[value & 0x0FU]);
}

}  // namespace navora
