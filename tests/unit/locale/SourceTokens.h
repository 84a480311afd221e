#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace navora::test {

enum class TokenKind { identifier, string, punctuation };

struct SourceToken {
  TokenKind kind;
  // The content of a string literal with its escapes decoded, or the token as written.
  std::string text;
  // Starts at 1.
  std::size_t line;

  bool is(std::string_view spelling) const { return kind != TokenKind::string && text == spelling; }
};

// Returns the tokens of a C++ or Objective-C++ source that matter for texts: comments, numbers and
// character literals are omitted, adjacent string literals are one token, and each punctuation
// character is a token.
std::vector<SourceToken> readSourceTokens(std::string_view source);

}  // namespace navora::test
