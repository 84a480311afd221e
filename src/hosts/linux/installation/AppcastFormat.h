#pragma once

#include <string_view>

#include "support/Text.h"

namespace navora {

// Names shared by the feed's reader and writer.
struct AppcastFormat {
  // Namespace of the elements and attributes that RSS does not have.
  static constexpr const char* xmlNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";
  // Start of the comment that ends a signed feed.
  static constexpr const char* signatureBeginning = "<!-- sparkle-signatures:";

  // Strips the white space of XML from both ends.
  static std::string_view bare(std::string_view text) { return strippedOf(text, " \t\r\n"); }
};

}  // namespace navora
