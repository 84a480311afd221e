#include "capture/CaptureAppearance.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "support/FatalError.h"
#include "support/PercentEncoding.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::size_t maximumPlaceholderCharacters = 200;
constexpr std::size_t maximumColorCharacters = 80;

using ColorField = std::pair<const char*, Color CaptureAppearance::*>;

constexpr std::array<ColorField, 11> colorFields{{
    {"surface", &CaptureAppearance::surface},
    {"surfaceEnd", &CaptureAppearance::surfaceEnd},
    {"border", &CaptureAppearance::border},
    {"focus", &CaptureAppearance::focus},
    {"ink", &CaptureAppearance::ink},
    {"caret", &CaptureAppearance::caret},
    {"placeholderColor", &CaptureAppearance::placeholderColor},
    {"muted", &CaptureAppearance::muted},
    {"button", &CaptureAppearance::button},
    {"buttonHover", &CaptureAppearance::buttonHover},
    {"buttonInk", &CaptureAppearance::buttonInk},
}};

struct NumberField {
  const char* key;
  double CaptureAppearance::* member;
  double minimum;
  double maximum;
};

constexpr std::array<NumberField, 4> numberFields{{
    {"radius", &CaptureAppearance::radius, 0, 48},
    {"padding", &CaptureAppearance::padding, 8, 48},
    {"fontSize", &CaptureAppearance::fontSize, 10, 32},
    {"lineHeight", &CaptureAppearance::lineHeight, 10, 64},
}};

// Both palettes in the order of colorFields.
constexpr std::array<const char*, 11> darkPalette{"#292725", "#242322", "#49403b", "#ab7873",
                                                  "#ede6df", "#f2a99c", "#b2a69e", "#a49991",
                                                  "#e94a69", "#f05b77", "#20201e"};
constexpr std::array<const char*, 11> lightPalette{"#ffffff", "#ffffff", "#ebebeb", "#d9d9d9",
                                                   "#252525", "#252525", "#c2c2c2", "#767676",
                                                   "#ff3c64", "#ff3c64", "#ffffff"};

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> choices) {
  for (const auto choice : choices) {
    if (text == choice) return true;
  }
  return false;
}

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

// Parses the whole piece as one finite decimal number, whatever the process's locale is.
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

bool readTheme(const Json& dictionary, CaptureAppearance& appearance) {
  appearance.theme = appearance.dark ? "dark" : "light";
  const auto theme = dictionary.find("theme");
  if (theme == dictionary.end()) return true;
  if (!theme->is_string()) return false;
  appearance.theme = theme->get<std::string>();
  return isOneOf(appearance.theme, {"system", "light", "dark"});
}

bool readColors(const Json& dictionary, CaptureAppearance& appearance) {
  for (const auto& [key, member] : colorFields) {
    const auto value = dictionary.find(key);
    const auto color = value == dictionary.end() ? std::nullopt : CaptureAppearance::color(*value);
    if (!color) return false;
    appearance.*member = *color;
  }
  return true;
}

bool readNumbers(const Json& dictionary, CaptureAppearance& appearance) {
  for (const auto& field : numberFields) {
    const auto number = numberMember(dictionary, field.key);
    // Phrased so that NaN is rejected.
    if (!number || !(*number >= field.minimum && *number <= field.maximum)) return false;
    appearance.*field.member = *number;
  }
  return true;
}

bool readTexts(const Json& dictionary, CaptureAppearance& appearance) {
  const auto font = stringMember(dictionary, "font");
  if (!font || !isOneOf(*font, {"sans", "serif", "mono"})) return false;
  const auto placeholder = stringMember(dictionary, "placeholder");
  if (!placeholder || characterCount(*placeholder) > maximumPlaceholderCharacters) return false;
  appearance.font = *font;
  appearance.placeholder = *placeholder;
  return true;
}

}  // namespace

std::optional<CaptureAppearance> CaptureAppearance::read(const Json& dictionary) {
  const auto dark = boolMember(dictionary, "dark");
  if (!dark) return std::nullopt;
  CaptureAppearance appearance{};
  appearance.dark = *dark;
  if (!readTheme(dictionary, appearance) || !readColors(dictionary, appearance) ||
      !readNumbers(dictionary, appearance) || !readTexts(dictionary, appearance)) {
    return std::nullopt;
  }
  return appearance;
}

std::optional<Color> CaptureAppearance::color(const Json& value) {
  if (!value.is_string()) return std::nullopt;
  const auto& written = value.get_ref<const std::string&>();
  if (characterCount(written) > maximumColorCharacters) return std::nullopt;
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

CaptureAppearance CaptureAppearance::fallback(bool dark) {
  CaptureAppearance appearance{};
  appearance.dark = dark;
  const auto& palette = dark ? darkPalette : lightPalette;
  for (std::size_t index = 0; index < colorFields.size(); ++index) {
    const auto parsed = color(palette[index]);
    if (!parsed) fatalError("A built-in colour does not parse", "CaptureAppearance", __LINE__);
    appearance.*colorFields[index].second = *parsed;
  }
  appearance.radius = dark ? 23 : 18;
  appearance.padding = dark ? 24 : 16;
  appearance.fontSize = 17;
  appearance.lineHeight = 24.65;
  appearance.font = "sans";
  appearance.theme = "system";
  return appearance;
}

CaptureAppearance CaptureAppearance::followingSystemAppearance(bool systemIsDark) const {
  if (theme != "system" || dark == systemIsDark) return *this;
  CaptureAppearance appearance = fallback(systemIsDark);
  appearance.fontSize = fontSize;
  appearance.lineHeight = lineHeight;
  appearance.font = font;
  appearance.placeholder = placeholder;
  return appearance;
}

WindowAppearance CaptureAppearance::windowAppearance() const {
  if (theme == "system") return WindowAppearance::system;
  return theme == "dark" ? WindowAppearance::dark : WindowAppearance::light;
}

CaptureEditorStyle CaptureAppearance::editorStyle() const {
  const FontFamily family = font == "serif"  ? FontFamily::serif
                            : font == "mono" ? FontFamily::mono
                                             : FontFamily::sans;
  return {family, fontSize, lineHeight, ink, caret, placeholderColor};
}

}  // namespace navora
