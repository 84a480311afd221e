#pragma once

#include <string>

#include "support/UrlLayout.h"

namespace navora {

// The text of a reference resolved against an absolute base (RFC 3986 section 5.2.2, strict).
std::string resolvedReference(const UrlLayout& base, const UrlLayout& reference);

}  // namespace navora
