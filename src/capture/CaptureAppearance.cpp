#include "capture/CaptureAppearance.h"

#include <array>
#include <string_view>
#include <utility>

#include "support/FatalError.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::size_t maximumPlaceholderCharacters = 200;

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

// In the order of colorFields.
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
    // Written so that no not-a-number passes.
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
