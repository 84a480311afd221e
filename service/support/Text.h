#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace navora::service {

/// True when every byte belongs to a well-formed UTF-8 sequence.
bool isUtf8(std::string_view text);

/// The number of UTF-16 code units of a well-formed UTF-8 text.
std::size_t utf16Length(std::string_view text);

/// Without spaces, tabs and line breaks at both ends.
std::string trimmed(std::string_view text);

/// At most `limit` Unicode characters, with an ellipsis in place of what was left out.
std::string shortened(std::string_view text, std::size_t limit);

/// Safe as HTML text and inside a quoted attribute.
std::string escapedHtml(std::string_view text);

}  // namespace navora::service
