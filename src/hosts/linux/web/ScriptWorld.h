#pragma once

namespace navora {

// Name of the script world of the application's own scripts. It shares the document with the page,
// but not the objects that the page's scripts define or replace.
inline constexpr const char* isolatedScriptWorld = "navora";

}  // namespace navora
