#include "unit/locale/SourceTokens.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace navora::test {
namespace {

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isIdentifierPart(char character) {
  return isDigit(character) || character == '_' || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z') || static_cast<unsigned char>(character) >= 0x80;
}

std::string utf8(std::uint32_t codePoint) {
  const auto continuation = [codePoint](int shift) {
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x80) return {static_cast<char>(codePoint)};
  if (codePoint < 0x800) return {static_cast<char>(0xC0 | (codePoint >> 6)), continuation(0)};
  if (codePoint < 0x10000)
    return {static_cast<char>(0xE0 | (codePoint >> 12)), continuation(6), continuation(0)};
  return {static_cast<char>(0xF0 | (codePoint >> 18)), continuation(12), continuation(6),
          continuation(0)};
}

class Reader {
 public:
  explicit Reader(std::string_view source) : source_(source) {}

  std::vector<SourceToken> read() {
    while (!atEnd())
      readOne();
    return std::move(tokens_);
  }

 private:
  bool atEnd() const { return position_ >= source_.size(); }
  char current() const { return atEnd() ? '\0' : source_[position_]; }
  bool startsWith(std::string_view text) const {
    return source_.substr(position_).starts_with(text);
  }
  void advance(std::size_t count) { position_ = std::min(position_ + count, source_.size()); }

  char take() {
    const char character = current();
    if (character == '\n') ++line_;
    advance(1);
    return character;
  }

  std::string_view takeIdentifier() {
    const auto begin = position_;
    while (isIdentifierPart(current()))
      ++position_;
    return source_.substr(begin, position_ - begin);
  }

  void skipPast(std::string_view end) {
    while (!atEnd() && !startsWith(end))
      take();
    advance(end.size());
  }

  void readOne() {
    if (startsWith("//")) return skipLineComment();
    if (startsWith("/*")) return skipPast("*/");
    if (isDigit(current())) return skipNumber();
    if (isIdentifierPart(current())) return readWord();
    if (current() == '"') return readString();
    if (current() == '\'') return skipCharacter();
    // An Objective-C string literal.
    if (startsWith("@\"")) return static_cast<void>(take());
    const auto line = line_;
    const char character = take();
    if (character > ' ') tokens_.push_back({TokenKind::punctuation, {character}, line});
  }

  void skipLineComment() {
    while (!atEnd() && current() != '\n')
      ++position_;
  }

  void skipNumber() {
    while (isIdentifierPart(current()) || current() == '.' || current() == '\'')
      ++position_;
  }

  void skipCharacter() {
    take();
    while (!atEnd() && current() != '\'')
      if (take() == '\\') take();
    take();
  }

  void readWord() {
    const auto word = takeIdentifier();
    constexpr std::array<std::string_view, 4> encodings = {"u8", "u", "U", "L"};
    if (current() == '"') {
      if (word.ends_with('R')) return readRawString();
      if (std::ranges::find(encodings, word) != encodings.end()) return readString();
    }
    tokens_.push_back({TokenKind::identifier, std::string(word), line_});
  }

  void readRawString() {
    const auto line = line_;
    take();
    std::string end = ")";
    while (!atEnd() && current() != '(')
      end += take();
    end += '"';
    take();
    std::string text;
    while (!atEnd() && !startsWith(end))
      text += take();
    advance(end.size());
    addString(std::move(text), line);
  }

  void readString() {
    const auto line = line_;
    take();
    std::string text;
    while (!atEnd() && current() != '"') {
      const char character = take();
      text += character == '\\' ? takeEscape() : std::string(1, character);
    }
    take();
    addString(std::move(text), line);
  }

  std::string takeEscape() {
    const char kind = take();
    switch (kind) {
      case 'n':
        return "\n";
      case 't':
        return "\t";
      case 'r':
        return "\r";
      case '0':
        return std::string(1, '\0');
      case '\n':
        return "";
      case 'x':
        return {static_cast<char>(takeHexadecimal(2))};
      case 'u':
        return utf8(takeHexadecimal(4));
      case 'U':
        return utf8(takeHexadecimal(8));
      default:
        return {kind};
    }
  }

  std::uint32_t takeHexadecimal(std::size_t digits) {
    const auto text = source_.substr(position_, digits);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    position_ += static_cast<std::size_t>(end - text.data());
    return value;
  }

  void addString(std::string text, std::size_t line) {
    takeIdentifier();  // A literal suffix.
    if (!tokens_.empty() && tokens_.back().kind == TokenKind::string) {
      tokens_.back().text += text;
    } else {
      tokens_.push_back({TokenKind::string, std::move(text), line});
    }
  }

  std::string_view source_;
  std::size_t position_ = 0;
  std::size_t line_ = 1;
  std::vector<SourceToken> tokens_;
};

}  // namespace

std::vector<SourceToken> readSourceTokens(std::string_view source) {
  return Reader(source).read();
}

}  // namespace navora::test
