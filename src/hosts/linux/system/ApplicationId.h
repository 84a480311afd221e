#pragma once

namespace navora {

// The application id: the name on the session bus, the base name of the desktop entry and of the
// icon, and the id of the status item.
inline constexpr const char* applicationId = "example.navora.Navora";

}  // namespace navora
