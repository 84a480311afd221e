#pragma once

#include <map>
#include <string>
#include <string_view>

namespace navora::service {

/// RFC 4648 with padding.
std::string base64(std::string_view bytes);

/// Percent-encodes everything but letters, digits and "-._~".
std::string percentEncoded(std::string_view text);

/// Decodes %XX and "+"; a broken escape stays as it is written.
std::string percentDecoded(std::string_view text);

/// The last value of each name of "name=value&name=value", decoded.
std::map<std::string, std::string> queryParameters(std::string_view query);

}  // namespace navora::service
