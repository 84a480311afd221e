#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace navora::service {

// Returns whether every byte belongs to a well-formed UTF-8 sequence.
bool isUtf8(std::string_view text);

// Returns the number of UTF-16 code units of well-formed UTF-8 text.
std::size_t utf16Length(std::string_view text);

// Removes spaces, tabs and line breaks from both ends.
std::string trimmed(std::string_view text);

// Returns the first `limit` Unicode characters of `text`, with an ellipsis if any are left out.
std::string shortened(std::string_view text, std::size_t limit);

// Escapes text for HTML content and quoted attributes.
std::string escapedHtml(std::string_view text);

}  // namespace navora::service
