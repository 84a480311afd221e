#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/Text.h"

namespace navora {
namespace {

constexpr const char* family =
    "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
constexpr const char* flag = "\xF0\x9F\x87\xAF\xF0\x9F\x87\xB5";

TEST(Text, AcceptsWellFormedUtf8Only) {
  for (const std::string text :
       {"", "a", "\xC3\xA9", "\xE2\x82\xAC", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBF"}) {
    EXPECT_TRUE(isValidUtf8(text)) << text;
  }
  for (const std::string text :
       {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80", "\xFF", "a\xE2\x82", "\xE2\x28\xA1"}) {
    EXPECT_FALSE(isValidUtf8(text)) << text;
  }
  EXPECT_TRUE(isValidUtf8(std::string_view("a\0b", 3)));
}

TEST(Text, CountsUtf16Units) {
  EXPECT_EQ(utf16Length(""), 0U);
  EXPECT_EQ(utf16Length("a\xC3\xA9\xE2\x82\xAC"), 3U);
  EXPECT_EQ(utf16Length("\xF0\x9F\x98\x80"), 2U);
  EXPECT_EQ(utf16Length("e\xCC\x81"), 2U);
  EXPECT_EQ(utf16Length(family), 8U);
  EXPECT_EQ(utf16Length("\xFF\xFF"), 2U);
}

TEST(Text, CountsUserPerceivedCharacters) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("abc"), 3U);
  EXPECT_EQ(characterCount("e\xCC\x81"), 1U);
  EXPECT_EQ(characterCount("\r\n"), 1U);
  EXPECT_EQ(characterCount("\n\r"), 2U);
  EXPECT_EQ(characterCount(family), 1U);
  EXPECT_EQ(characterCount(std::string(flag) + flag), 2U);
  EXPECT_EQ(characterCount("\xCC\x81"), 1U);
  EXPECT_EQ(characterCount("\xFF\xFF"), 2U);
}

TEST(Text, TruncatesBetweenUserPerceivedCharacters) {
  const std::string text = std::string("e\xCC\x81") + family + flag + "x";
  EXPECT_EQ(prefixCharacters(text, 0), "");
  EXPECT_EQ(prefixCharacters(text, 1), "e\xCC\x81");
  EXPECT_EQ(prefixCharacters(text, 2), std::string("e\xCC\x81") + family);
  EXPECT_EQ(prefixCharacters(text, 4), text);
  EXPECT_EQ(prefixCharacters(text, 1000), text);
}

TEST(Text, TrimsUnicodeWhiteSpaceAndLineBreaksAtBothEnds) {
  EXPECT_EQ(trimmed(" \t\r\n\v\fa b\n "), "a b");
  EXPECT_EQ(
      trimmed("\xC2\x85\xC2\xA0\xE1\x9A\x80\xE2\x80\x83x\xE2\x80\xA8\xE2\x80\xA9\xE3\x80\x80"),
      "x");
  EXPECT_EQ(trimmed("\xE2\x80\x8B \xE2\x80\x8Bx\xE2\x80\x8B"), "x");
  EXPECT_EQ(trimmed(" \n "), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Text, KeepsFormatAndControlCharactersWhenTrimming) {
  for (const std::string kept :
       {"\xE2\x80\x8Cx\xE2\x80\x8C", "\xEF\xBB\xBFx", "\x1Fx\x1F", "\xFFx\xFF"}) {
    EXPECT_EQ(trimmed(kept), kept);
  }
}

// Returns how many bytes the first character of a non-empty text has.
std::size_t firstLength(const std::string& text) {
  for (std::size_t size = 1; size <= std::min<std::size_t>(4, text.size()); ++size) {
    if (isValidUtf8(text.substr(0, size))) return size;
  }
  return 1;
}

// Trims by reading the whole text forwards, character by character.
std::string trimmedForwards(const std::string& text) {
  // U+0020, U+000A, U+00A0, U+2000, U+2003, U+200B and U+2028
  const std::set<std::string> blanks{
      " ", "\n", "\xC2\xA0", "\xE2\x80\x80", "\xE2\x80\x83", "\xE2\x80\x8B", "\xE2\x80\xA8"};
  std::size_t begin = std::string::npos;
  std::size_t end = 0;
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t size = firstLength(text.substr(offset));
    const bool isBlank = blanks.contains(text.substr(offset, size));
    if (!isBlank && begin == std::string::npos) begin = offset;
    offset += size;
    if (!isBlank) end = offset;
  }
  return begin == std::string::npos ? std::string() : text.substr(begin, end - begin);
}

TEST(Text, TrimsTextThatIsNotWellFormed) {
  // The bytes of a few blanks, cut and put together at random.
  const std::string bytes = " \n\xC2\xA0\xE2\x80\x83\xE2\x80\x8B\xF0\x9F\x91\xA8\x80\xFFx";
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    std::string text(random() % 9, ' ');
    for (char& byte : text)
      byte = bytes[random() % bytes.size()];
    EXPECT_EQ(trimmed(text), trimmedForwards(text)) << testing::PrintToString(text);
  }
}

TEST(Text, LowerCasesAsciiOnly) {
  EXPECT_EQ(lowercasedAscii("AZaz@[\xC3\x89"), "azaz@[\xC3\x89");
}

TEST(Text, LowerCasesUnicode) {
  EXPECT_EQ(lowercased("AZ\xC3\x89\xD0\x96\xCE\xA3"), "az\xC3\xA9\xD0\xB6\xCF\x83");
  EXPECT_EQ(lowercased("\xC4\xB0I"), "i\xCC\x87i");
  EXPECT_EQ(lowercased("A\xFF"), "a\xFF");
  EXPECT_EQ(lowercased("\xE6\x97\xA5"), "\xE6\x97\xA5");
}

TEST(Text, ReplacesEveryOccurrenceOnce) {
  EXPECT_EQ(replaceAll("aXbXc", "X", "YX"), "aYXbYXc");
  EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(replaceAll("abc", "abc", ""), "");
  EXPECT_EQ(replaceAll("abc", "d", "x"), "abc");
}

TEST(Text, SplitsKeepingEmptyPieces) {
  using Pieces = std::vector<std::string>;
  EXPECT_EQ(split("a-b", '-'), (Pieces{"a", "b"}));
  EXPECT_EQ(split("-a--", '-'), (Pieces{"", "a", "", ""}));
  EXPECT_EQ(split("", '-'), Pieces{""});
  EXPECT_EQ(split("abc", '-'), Pieces{"abc"});
}

TEST(TextStrippedOf, RemovesBytesFromBothEndsOnly) {
  EXPECT_EQ(strippedOf("..a.b.", "."), "a.b");
  EXPECT_EQ(strippedOf(" \ta b\t", " \t"), "a b");
  EXPECT_EQ(strippedOf("ab", "."), "ab");
  EXPECT_EQ(strippedOf("...", "."), "");
  EXPECT_EQ(strippedOf("", "."), "");
}

TEST(TextWholeNumber, ParsesDecimalDigits) {
  EXPECT_EQ(wholeNumber<int>("0"), 0);
  EXPECT_EQ(wholeNumber<int>("0042"), 42);
  EXPECT_EQ(wholeNumber<int>("-7"), -7);
  EXPECT_EQ(wholeNumber<int>(std::string_view("123", 2)), 12);
}

TEST(TextWholeNumber, RejectsAnyOtherCharacter) {
  for (const char* text : {"", "-", "x", " 1", "1 ", "+1", "1.5", "1e3", "0x10", "--1"})
    EXPECT_EQ(wholeNumber<int>(text), std::nullopt) << text;
  EXPECT_EQ(wholeNumber<int>(std::string_view()), std::nullopt);
  EXPECT_EQ(wholeNumber<int>(std::string_view("1\0", 2)), std::nullopt);
}

TEST(TextWholeNumber, RejectsNumbersThatTheTypeCannotRepresent) {
  EXPECT_EQ(wholeNumber<std::uint64_t>("18446744073709551615"),
            std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(wholeNumber<std::uint64_t>("18446744073709551616"), std::nullopt);
  EXPECT_EQ(wholeNumber<std::uint32_t>("-0"), std::nullopt);
  EXPECT_EQ(wholeNumber<std::int8_t>("-128"), std::int8_t{-128});
  EXPECT_EQ(wholeNumber<std::int8_t>("128"), std::nullopt);
}

TEST(TextUppercasedAscii, ChangesOnlyAToZ) {
  EXPECT_EQ(uppercasedAscii("abc-XYZ-019-\u00E9-\u00DF"), "ABC-XYZ-019-\u00E9-\u00DF");
}

}  // namespace
}  // namespace navora
