#pragma once

#include <map>
#include <string>
#include <string_view>

namespace navora::service {

// Encodes as base64 with padding (RFC 4648, section 4).
std::string base64(std::string_view bytes);

// Percent-encodes everything but letters, digits and "-._~".
std::string percentEncoded(std::string_view text);

// Decodes %XX and "+"; leaves a malformed escape unchanged.
std::string percentDecoded(std::string_view text);

// Parses "name=value&name=value" into decoded values; the last value of a repeated name wins.
std::map<std::string, std::string> queryParameters(std::string_view query);

}  // namespace navora::service
