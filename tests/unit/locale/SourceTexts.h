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

// The texts that the code gives to the translator `L`.
struct SourceTexts {
  std::set<std::string> keys;
  // Why `keys` may be incomplete, a line each: a call whose text cannot be followed to a literal,
  // or a Russian literal that reaches no call.
  std::vector<std::string> problems;
};

// A call's text may be a literal, a choice of literals or a named constant of its own file or of a
// header. If it is none of these (a member of a table, say), every Russian literal of the file
// counts as its text.
SourceTexts findSourceTexts(const std::vector<SourceFile>& files);

// All .h, .cpp and .mm files below a folder, in the order of their names.
std::vector<SourceFile> readSourceFiles(const std::filesystem::path& folder);

// The whole file; empty when it cannot be read.
std::string readTextFile(const std::filesystem::path& path);

bool hasCyrillic(std::string_view text);

}  // namespace navora::test
