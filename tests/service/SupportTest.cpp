#include <gtest/gtest.h>

#include "service/jobs/NoteDigest.h"
#include "service/support/Encoding.h"
#include "service/support/Files.h"
#include "service/support/Identifiers.h"
#include "service/support/Text.h"
#include "service/support/Time.h"
#include "service/support/ZipArchive.h"

namespace navora::service::tests {
namespace {

TEST(Text, RecognisesUtf8) {
  for (const char* text : {"", "a", "\u00e4", "\u20ac", "\U0010FFFF"})
    EXPECT_TRUE(isUtf8(text));
  for (const char* bytes : {"\x80", "\xC0\x80", "\xE0\x9F\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xC3", "\xF5\x80\x80\x80"}) {
    EXPECT_FALSE(isUtf8(bytes));
  }
}

TEST(Text, CountsUtf16Units) {
  EXPECT_EQ(utf16Length("a\u00e4\u20ac\U0001F642"), 5U);
}

TEST(Text, ShortensByCharacters) {
  EXPECT_EQ(shortened("äöü", 3), "äöü");
  EXPECT_EQ(shortened("äö üx", 3), "äö…");
}

TEST(Encoding, Base64PadsToFours) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64(std::string("\0\xFF", 2)), "AP8=");
}

TEST(Encoding, PercentDecodingKeepsBrokenEscapes) {
  EXPECT_EQ(percentDecoded("a%20b+c%2"), "a b c%2");
  EXPECT_EQ(percentDecoded("%zz%41"), "%zzA");
}

TEST(Encoding, QueryParametersMayBeEmptyOrRepeated) {
  const auto parameters = queryParameters("a=1&b&&a=2&c=x%26y");
  EXPECT_EQ(parameters.size(), 3U);
  EXPECT_EQ(parameters.at("a"), "2");
  EXPECT_EQ(parameters.at("b"), "");
  EXPECT_EQ(parameters.at("c"), "x&y");
}

TEST(Files, TemplateValuesAreNotSearchedForPlaceholders) {
  EXPECT_EQ(filledTemplate("{{a}}{{b}}{{c", {{"a", "{{b}}"}, {"b", "x"}}), "{{b}}x{{c");
}

TEST(Time, FormatsAndChecksDates) {
  EXPECT_EQ(isoTime(1709251199005), "2024-02-29T23:59:59.005Z");
  EXPECT_EQ(isoDate(1709251199005, 1), "2024-03-01");
  EXPECT_TRUE(isIsoDate("2024-02-29"));
  EXPECT_FALSE(isIsoDate("2023-02-29"));
}

TEST(Identifiers, AreRandomAndWellFormed) {
  const std::string uuid = randomUuid();
  EXPECT_EQ(uuid.size(), 36U);
  EXPECT_EQ(uuid[14], '4');
  EXPECT_NE(uuid, randomUuid());
  EXPECT_EQ(randomToken().size(), 64U);
}

TEST(NoteDigestTest, SingleWordHasNoPlural) {
  EXPECT_EQ(NoteDigest::of(" tea ").summary, "1 word");
  EXPECT_EQ(NoteDigest::of(std::string(100, 'a')).title, std::string(80, 'a') + "…");
}

TEST(ZipArchiveTest, HasTheStoredFormOfItsFiles) {
  ZipArchive archive;
  archive.add("a.txt", "123456789");
  const std::string bytes = archive.bytes();
  EXPECT_EQ(bytes.substr(0, 4), std::string("PK\x03\x04", 4));
  // The standard check value of CRC-32.
  EXPECT_EQ(bytes.substr(14, 4), std::string("\x26\x39\xF4\xCB", 4));
  EXPECT_EQ(bytes.substr(30, 14), "a.txt123456789");
  EXPECT_EQ(bytes.substr(bytes.size() - 22, 4), std::string("PK\x05\x06", 4));
  EXPECT_EQ(bytes.substr(bytes.size() - 6, 4), std::string("\x2C\0\0\0", 4));
}

}  // namespace
}  // namespace navora::service::tests
