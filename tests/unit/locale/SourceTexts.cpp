#include "unit/locale/SourceTexts.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include "unit/locale/SourceTokens.h"

namespace navora::test {
namespace {

// Maps a name to the literals that it is initialized with or assigned.
using Constants = std::map<std::string, std::set<std::string>>;

struct ParsedFile {
  std::string name;
  std::vector<SourceToken> tokens;
  Constants constants;

  const SourceToken* at(std::size_t index) const {
    return index < tokens.size() ? &tokens[index] : nullptr;
  }
  bool is(std::size_t index, std::string_view spelling) const {
    return index < tokens.size() && tokens[index].is(spelling);
  }
};

std::string place(const ParsedFile& file, const SourceToken& token) {
  return file.name + ":" + std::to_string(token.line);
}

// Returns the index after the brackets that may follow an array's name.
std::size_t skipBrackets(const ParsedFile& file, std::size_t index) {
  if (!file.is(index, "[")) return index;
  while (index < file.tokens.size() && !file.is(index, "]"))
    ++index;
  return index + 1;
}

// name = "text";  name{"text"};  name[] = "text";
Constants findConstants(const ParsedFile& file) {
  Constants constants;
  for (std::size_t index = 0; index < file.tokens.size(); ++index) {
    if (file.tokens[index].kind != TokenKind::identifier) continue;
    const auto next = skipBrackets(file, index + 1);
    const auto* literal = file.at(next + 1);
    if (!literal || literal->kind != TokenKind::string) continue;
    const bool assigned = file.is(next, "=") && (file.is(next + 2, ";") || file.is(next + 2, ","));
    const bool braced = file.is(next, "{") && file.is(next + 2, "}") && file.is(next + 3, ";");
    if (assigned || braced) constants[file.tokens[index].text].insert(literal->text);
  }
  return constants;
}

// `L(` after a type is the declaration of L itself.
bool isCall(const ParsedFile& file, std::size_t index) {
  constexpr std::array<std::string_view, 6> keywords = {"return", "co_return", "co_yield",
                                                        "else",   "case",      "throw"};
  if (!file.is(index, "L") || !file.is(index + 1, "(")) return false;
  if (index == 0 || file.tokens[index - 1].kind != TokenKind::identifier) return true;
  return std::ranges::find(keywords, file.tokens[index - 1].text) != keywords.end();
}

class Search {
 public:
  explicit Search(const std::vector<SourceFile>& sources) {
    for (const auto& source : sources) {
      ParsedFile file{source.name, readSourceTokens(source.text), {}};
      file.constants = findConstants(file);
      if (file.name.ends_with(".h")) {
        for (const auto& [name, texts] : file.constants)
          shared_[name].insert(texts.begin(), texts.end());
      }
      files_.push_back(std::move(file));
    }
  }

  SourceTexts run() {
    for (const auto& file : files_) {
      for (std::size_t index = 0; index < file.tokens.size(); ++index)
        if (isCall(file, index)) addCall(file, index);
    }
    for (const auto& file : files_)
      reportForgotten(file);
    return std::move(found_);
  }

 private:
  void addCall(const ParsedFile& file, std::size_t call) {
    auto texts = argumentTexts(file, call + 2);
    if (texts.empty()) texts = russianLiterals(file);
    if (texts.empty()) {
      found_.problems.push_back(place(file, file.tokens[call]) +
                                ": the text given to L cannot be followed to a literal");
    }
    found_.keys.insert(texts.begin(), texts.end());
  }

  // Returns the literals of the first argument, which starts at `index`.
  std::set<std::string> argumentTexts(const ParsedFile& file, std::size_t index) const {
    std::set<std::string> texts;
    for (int depth = 0; index < file.tokens.size(); ++index) {
      const auto& token = file.tokens[index];
      if (depth == 0 && (token.is(",") || token.is(")"))) break;
      if (token.is("(") || token.is("{") || token.is("[")) ++depth;
      if (token.is(")") || token.is("}") || token.is("]")) --depth;
      if (token.kind == TokenKind::string) texts.insert(token.text);
      if (token.kind == TokenKind::identifier && !isPrefix(file, index + 1))
        texts.merge(constantTexts(file, token.text));
    }
    return texts;
  }

  // Returns whether the name before `index` is a function, a type or a scope rather than a value.
  static bool isPrefix(const ParsedFile& file, std::size_t index) {
    const bool isScope = file.is(index, ":") && file.is(index + 1, ":");
    return isScope || file.is(index, "(") || file.is(index, "{");
  }

  std::set<std::string> constantTexts(const ParsedFile& file, const std::string& name) const {
    if (const auto own = file.constants.find(name); own != file.constants.end()) return own->second;
    const auto shared = shared_.find(name);
    return shared == shared_.end() ? std::set<std::string>{} : shared->second;
  }

  static std::set<std::string> russianLiterals(const ParsedFile& file) {
    std::set<std::string> texts;
    for (const auto& token : file.tokens)
      if (token.kind == TokenKind::string && hasCyrillic(token.text)) texts.insert(token.text);
    return texts;
  }

  void reportForgotten(const ParsedFile& file) {
    for (const auto& token : file.tokens) {
      if (token.kind != TokenKind::string || !hasCyrillic(token.text)) continue;
      if (found_.keys.contains(token.text)) continue;
      found_.problems.push_back(place(file, token) + ": does not pass through L: " + token.text);
    }
  }

  std::vector<ParsedFile> files_;
  Constants shared_;
  SourceTexts found_;
};

}  // namespace

SourceTexts findSourceTexts(const std::vector<SourceFile>& files) {
  return Search(files).run();
}

std::vector<SourceFile> readSourceFiles(const std::filesystem::path& folder) {
  std::vector<SourceFile> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
    const auto extension = entry.path().extension();
    if (!entry.is_regular_file()) continue;
    if (extension != ".h" && extension != ".cpp" && extension != ".mm") continue;
    files.push_back(
        {entry.path().lexically_relative(folder).generic_string(), readTextFile(entry.path())});
  }
  std::ranges::sort(files, {}, &SourceFile::name);
  return files;
}

std::string readTextFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool hasCyrillic(std::string_view text) {
  // The lead bytes of U+0400 to U+04FF.
  return text.find_first_of("\xD0\xD1\xD2\xD3") != std::string_view::npos;
}

}  // namespace navora::test
