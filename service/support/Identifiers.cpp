#include "service/support/Identifiers.h"

#include <array>
#include <cstddef>
#include <random>

namespace navora::service {
namespace {

template <std::size_t size>
std::array<unsigned char, size> randomBytes() {
  // std::random_device reads the system's entropy source; a seeded generator would be guessable.
  std::random_device device;
  std::array<unsigned char, size> bytes{};
  for (unsigned char& byte : bytes)
    byte = static_cast<unsigned char>(device() & 0xFFU);
  return bytes;
}

void appendHexadecimal(std::string& text, unsigned char byte) {
  constexpr char digits[] = "0123456789abcdef";
  text += digits[byte >> 4U];
  text += digits[byte & 0xFU];
}

}  // namespace

std::string randomUuid() {
  auto bytes = randomBytes<16>();
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
  std::string text;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
    appendHexadecimal(text, bytes[index]);
  }
  return text;
}

std::string randomToken() {
  std::string text;
  for (unsigned char byte : randomBytes<32>())
    appendHexadecimal(text, byte);
  return text;
}

}  // namespace navora::service
