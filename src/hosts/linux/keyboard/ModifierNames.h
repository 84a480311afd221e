#pragma once

#include <string>

namespace navora {

// The text with the names that the keys have on this desktop in place of the Mac's symbols.
std::string withModifierNames(const std::string& text);

}  // namespace navora
