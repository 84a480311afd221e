#pragma once

#include <string>

namespace navora {

// Replaces the symbols of the Mac's modifier keys in a visible text by the names that keyboards and
// the toolkit's menus give this desktop's keys in the interface's language.
std::string withModifierNames(const std::string& text);

}  // namespace navora
