#pragma once

namespace navora {

// The appearance of a window's native parts; `system` follows the desktop.
enum class WindowAppearance { system, light, dark };

}  // namespace navora
