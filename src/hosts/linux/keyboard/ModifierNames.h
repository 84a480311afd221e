#pragma once

#include <string>

namespace navora {

// Replaces the symbols of the Mac's modifier keys in a visible text by this desktop's key names.
std::string withModifierNames(const std::string& text);

}  // namespace navora
