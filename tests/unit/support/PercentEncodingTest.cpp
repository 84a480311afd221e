#include <gtest/gtest.h>

#include "support/PercentEncoding.h"

namespace navora {
namespace {

TEST(PercentEncoding, KeepsOnlyAsciiLettersAndDigits) {
  EXPECT_EQ(percentEncoded("azAZ09"), "azAZ09");
  EXPECT_EQ(percentEncoded("-._~/?#&=+%"), "%2D%2E%5F%7E%2F%3F%23%26%3D%2B%25");
  EXPECT_EQ(percentEncoded("\xC3\xA9"), "%C3%A9");
  EXPECT_EQ(percentEncoded(std::string_view("\0", 1)), "%00");
  EXPECT_EQ(percentEncoded(""), "");
}

TEST(PercentEncoding, KeepsTheLegalCharactersOfAPathSegment) {
  EXPECT_EQ(percentEncodedPathSegment("a-._~!$&'()*+,;=:@"), "a-._~!$&'()*+,;=:@");
  EXPECT_EQ(percentEncodedPathSegment("/?#[]%20"), "%2F%3F%23%5B%5D%2520");
}

TEST(PercentEncoding, DecodesTripletsOnly) {
  EXPECT_EQ(percentDecoded("b%C3%bCcher+%41"),
            "b\xC3\xBC"
            "cher+A");
  EXPECT_EQ(percentDecoded("%"), "%");
  EXPECT_EQ(percentDecoded("%4%zz%"), "%4%zz%");
  EXPECT_EQ(percentDecoded("%2541"), "%41");
}

TEST(HexadecimalValue, AcceptsHexadecimalDigitsOfEitherCaseOnly) {
  EXPECT_EQ(hexadecimalValue('0'), 0U);
  EXPECT_EQ(hexadecimalValue('9'), 9U);
  EXPECT_EQ(hexadecimalValue('a'), 10U);
  EXPECT_EQ(hexadecimalValue('F'), 15U);
  for (const char other : {'g', 'G', '/', ':', '@', '`', ' ', '\0', '\xC3'})
    EXPECT_EQ(hexadecimalValue(other), std::nullopt) << other;
}

}  // namespace
}  // namespace navora
