#pragma once

namespace navora {

// How the native parts of a window look; `system` follows the desktop.
enum class WindowAppearance { system, light, dark };

}  // namespace navora
