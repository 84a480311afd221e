#pragma once

#include <string>

namespace navora {

// Texts as the desktop's notification service takes them: valid UTF-8 without control characters,
// no longer than anybody reads on a card.

// One line of plain text.
std::string notificationSummary(const std::string& title);

// Lines of text; `markup` says that the service reads it as markup, so that it must be escaped.
std::string notificationBody(const std::string& body, bool markup);

}  // namespace navora
