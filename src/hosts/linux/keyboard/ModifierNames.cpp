#include "hosts/linux/keyboard/ModifierNames.h"

#include <array>
#include <utility>

#include "support/Text.h"

namespace navora {

std::string withModifierNames(const std::string& text) {
  // Longer symbols first, because they contain the shorter ones.
  static constexpr std::array<std::pair<const char*, const char*>, 4> names{{
      {"⌘⇧", "Ctrl+Shift+"},
      {"⌘+", "Ctrl+"},
      {"⌘", "Ctrl"},
      {"⇧", "Shift"},
  }};
  std::string result = text;
  for (const auto& [symbol, name] : names)
    result = replaceAll(result, symbol, name);
  return result;
}

}  // namespace navora
