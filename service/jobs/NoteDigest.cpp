#include "service/jobs/NoteDigest.h"

#include <sstream>

#include "service/support/Text.h"

namespace navora::service {
namespace {

constexpr std::size_t titleLength = 80;

std::string counted(std::size_t number, const char* noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::size_t nonEmptyLines(const std::string& text) {
  std::size_t lines = 0;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines += trimmed(line).empty() ? 0 : 1;
  return lines;
}

}  // namespace

NoteDigest NoteDigest::of(std::string_view raw) {
  const std::string text = trimmed(raw);
  std::size_t words = 0;
  std::string tags;
  std::istringstream stream(text);
  for (std::string word; stream >> word; ++words) {
    if (word.size() > 1 && word.front() == '#') tags += " " + word;
  }
  std::string summary = counted(words, "word");
  if (const std::size_t lines = nonEmptyLines(text); lines > 1) {
    summary += " · " + counted(lines, "line");
  }
  if (!tags.empty()) summary += " ·" + tags;
  return {shortened(trimmed(text.substr(0, text.find('\n'))), titleLength), summary};
}

}  // namespace navora::service
