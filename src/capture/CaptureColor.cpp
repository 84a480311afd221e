#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string_view>
#include <vector>

#include "capture/CaptureAppearance.h"
#include "support/PercentEncoding.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::size_t maximumCharacters = 80;

std::optional<Color> hexadecimalColor(std::string_view digits) {
  std::vector<double> channels;
  for (std::size_t index = 0; index < digits.size(); index += 2) {
    const auto high = hexadecimalValue(digits[index]);
    const auto low = hexadecimalValue(digits[index + 1]);
    if (!high || !low) return std::nullopt;
    channels.push_back((*high * 16 + *low) / 255.0);
  }
  return Color{channels[0], channels[1], channels[2], channels.size() == 4 ? channels[3] : 1};
}

// The whole piece must be one finite decimal number; the user's language has no say in it.
std::optional<double> decimalNumber(std::string_view piece) {
  if (piece.empty() || piece.find_first_not_of("0123456789.eE+-") != std::string_view::npos) {
    return std::nullopt;
  }
  std::istringstream stream{std::string(piece)};
  stream.imbue(std::locale::classic());
  double number = 0;
  stream >> number;
  if (stream.fail() || stream.peek() != std::istringstream::traits_type::eof()) return std::nullopt;
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<Color> functionalColor(std::string_view arguments) {
  std::vector<double> numbers;
  for (const std::string& piece : split(arguments, ',')) {
    const auto number = decimalNumber(strippedOf(piece, " \t"));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  if (numbers.size() != 3 && numbers.size() != 4) return std::nullopt;
  for (std::size_t index = 0; index < 3; ++index) {
    if (numbers[index] < 0 || numbers[index] > 255) return std::nullopt;
  }
  const double alpha = numbers.size() == 4 ? numbers[3] : 1;
  if (alpha < 0 || alpha > 1) return std::nullopt;
  return Color{numbers[0] / 255, numbers[1] / 255, numbers[2] / 255, alpha};
}

}  // namespace

std::optional<Color> CaptureAppearance::color(const Json& value) {
  if (!value.is_string()) return std::nullopt;
  const auto& written = value.get_ref<const std::string&>();
  if (characterCount(written) > maximumCharacters) return std::nullopt;
  const std::string text = trimmed(written);
  if (text.starts_with("#") && (text.size() == 7 || text.size() == 9)) {
    return hexadecimalColor(std::string_view(text).substr(1));
  }
  if ((text.starts_with("rgb(") || text.starts_with("rgba(")) && text.ends_with(")")) {
    const auto begin = text.find('(') + 1;
    return functionalColor(std::string_view(text).substr(begin, text.size() - 1 - begin));
  }
  return std::nullopt;
}

}  // namespace navora
