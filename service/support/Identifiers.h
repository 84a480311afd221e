#pragma once

#include <string>

namespace navora::service {

/// A fresh random UUID (version 4) in lower case, 36 characters.
std::string randomUuid();

/// 256 random bits as 64 hexadecimal digits: the value of a session cookie.
std::string randomToken();

}  // namespace navora::service
