#pragma once

namespace navora {

// The script world of the application's own scripts: it sees the same document as the page, but
// nothing that the page's scripts define or replace.
inline constexpr const char* isolatedScriptWorld = "navora";

}  // namespace navora
