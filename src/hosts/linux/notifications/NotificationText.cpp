#include "hosts/linux/notifications/NotificationText.h"

#include <algorithm>
#include <cstddef>

#include <glib.h>

#include "hosts/linux/system/GLibSupport.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::size_t summaryLength = 200;
constexpr std::size_t bodyLength = 2000;
// Few user-perceived characters have more bytes; a text with longer ones is cut earlier.
constexpr std::size_t bytesPerCharacter = 64;

bool isControl(gunichar character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

std::string withoutControls(const std::string& text) {
  std::string result;
  for (const char* next = text.c_str(); *next != 0; next = g_utf8_next_char(next)) {
    const gunichar character = g_utf8_get_char(next);
    const bool isSpace = character == '\n' || character == '\t';
    if (!isSpace && isControl(character)) continue;
    result.append(next, static_cast<std::size_t>(g_utf8_next_char(next) - next));
  }
  return result;
}

// Cleans and shortens the text to `length` characters without processing much more than these.
std::string readable(const std::string& text, std::size_t length) {
  std::string beginning = text.substr(0, (length + 1) * bytesPerCharacter);
  const bool isCut = beginning.size() < text.size();
  std::erase(beginning, '\0');
  const GCharPtr valid(g_utf8_make_valid(beginning.data(), static_cast<gssize>(beginning.size())));
  const std::string clean = withoutControls(valid.get());
  // The last character may have been cut in two.
  const std::size_t whole = isCut ? std::max<std::size_t>(characterCount(clean), 2) - 1 : length;
  std::string prefix = prefixCharacters(clean, std::min(whole, length));
  return isCut || prefix.size() < clean.size() ? prefix + "…" : prefix;
}

}  // namespace

std::string notificationSummary(const std::string& title) {
  std::string summary = readable(title, summaryLength);
  std::ranges::replace(summary, '\n', ' ');
  return summary;
}

std::string notificationBody(const std::string& body, bool markup) {
  std::string text = readable(body, bodyLength);
  if (!markup) return text;
  text = replaceAll(text, "&", "&amp;");
  text = replaceAll(text, "<", "&lt;");
  return replaceAll(text, ">", "&gt;");
}

}  // namespace navora
