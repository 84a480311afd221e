#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace navora::test {

struct SourceFile {
  std::string name;
  std::string text;
};

// The texts that the code passes to L().
struct SourceTexts {
  std::set<std::string> keys;
  // Reasons why `keys` may be incomplete, one line each: a call whose text cannot be traced to a
  // literal, or a Russian literal that is not passed to L().
  std::vector<std::string> problems;
};

// Collects the texts. The text of a call may be a literal, a conditional of literals or a named
// constant of its own file or of a header. Otherwise, for example for a member of a table, every
// Russian literal of the file counts.
SourceTexts findSourceTexts(const std::vector<SourceFile>& files);

// Returns all .h, .cpp and .mm files below a folder, sorted by name.
std::vector<SourceFile> readSourceFiles(const std::filesystem::path& folder);

// Returns the contents of a file, or an empty text if it cannot be read.
std::string readTextFile(const std::filesystem::path& path);

bool hasCyrillic(std::string_view text);

}  // namespace navora::test
