#pragma once

#include <string>
#include <string_view>

namespace navora::service {

/// What processing makes of a note.
struct NoteDigest {
  std::string title;    ///< The first line, shortened.
  std::string summary;  ///< Number of words and lines, and the note's #tags.

  static NoteDigest of(std::string_view raw);
};

}  // namespace navora::service
