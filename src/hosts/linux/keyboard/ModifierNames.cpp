#include "hosts/linux/keyboard/ModifierNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "locale/DesktopLocale.h"
#include "support/Text.h"

namespace navora {
namespace {

// The names of the keys in the languages that have their own.
struct KeyNames {
  std::string_view language;
  std::string_view control;
  std::string_view shift;
};
constexpr KeyNames english{"en", "Ctrl", "Shift"};
constexpr std::array<KeyNames, 3> keyNames{{
    {"de", "Strg", "Umschalt"},
    {"es", "Ctrl", "Mayús"},
    {"fr", "Ctrl", "Maj"},
}};

const KeyNames& keyNamesIn(std::string_view language) {
  const auto names = std::ranges::find(keyNames, language, &KeyNames::language);
  return names == keyNames.end() ? english : *names;
}

}  // namespace

std::string withModifierNames(const std::string& text) {
  const KeyNames& names = keyNamesIn(DesktopLocale::current());
  const std::string control(names.control);
  const std::string shift(names.shift);
  // Longer symbols first, because they contain the shorter ones.
  const std::array<std::pair<const char*, std::string>, 4> replacements{{
      {"⌘⇧", control + "+" + shift + "+"},
      {"⌘+", control + "+"},
      {"⌘", control},
      {"⇧", shift},
  }};
  std::string result = text;
  for (const auto& [symbol, name] : replacements)
    result = replaceAll(result, symbol, name);
  return result;
}

}  // namespace navora
