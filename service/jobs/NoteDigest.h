#pragma once

#include <string>
#include <string_view>

namespace navora::service {

// The result of processing a note.
struct NoteDigest {
  std::string title;    // The first line, shortened.
  std::string summary;  // The numbers of words and lines, and the note's #tags.

  static NoteDigest of(std::string_view raw);
};

}  // namespace navora::service
