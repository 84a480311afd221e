#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace navora::test {

enum class TokenKind { identifier, string, punctuation };

struct SourceToken {
  TokenKind kind;
  // A string's content with its escapes decoded, or the token as written.
  std::string text;
  // Counted from 1.
  std::size_t line;

  bool is(std::string_view spelling) const { return kind != TokenKind::string && text == spelling; }
};

// The tokens of C++ or Objective-C++ as far as texts need them: no comments, no numbers, no
// character literals; adjacent string literals are one token. Punctuation is one character each.
std::vector<SourceToken> readSourceTokens(std::string_view source);

}  // namespace navora::test
