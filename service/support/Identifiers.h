#pragma once

#include <string>

namespace navora::service {

// Returns a random UUID (RFC 9562, version 4) in lower case.
std::string randomUuid();

// Returns 256 random bits as 64 hexadecimal digits, for a session cookie.
std::string randomToken();

}  // namespace navora::service
