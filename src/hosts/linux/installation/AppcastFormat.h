#pragma once

#include <string_view>

#include "support/Text.h"

namespace navora {

// What those who read feeds and those who make them have to write alike.
struct AppcastFormat {
  // Of the elements and attributes that RSS does not have.
  static constexpr const char* xmlNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";
  // Begins the comment at the end of a feed that is signed as a whole.
  static constexpr const char* signatureBeginning = "<!-- sparkle-signatures:";

  // A text without the white space of XML around it, which does not count.
  static std::string_view bare(std::string_view text) { return strippedOf(text, " \t\r\n"); }
};

}  // namespace navora
