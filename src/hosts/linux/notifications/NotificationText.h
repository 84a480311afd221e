#pragma once

#include <string>

namespace navora {

// Both functions return valid UTF-8 without control characters, shortened with an ellipsis to a
// length that fits a notification.

// Returns the title as one line of plain text.
std::string notificationSummary(const std::string& title);

// Returns the body, which may have several lines; escaped if the service parses it as markup.
std::string notificationBody(const std::string& body, bool markup);

}  // namespace navora
