#include <gtest/gtest.h>

#include "support/Json.h"

namespace navora {
namespace {

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(ParseJson, ParsesEveryKindOfValue) {
  const auto json = parseJson(R"( {"a": [1, -2.5, true, null, "\u00e9"]} )");
  ASSERT_TRUE(json);
  EXPECT_EQ((*json)["a"].dump(), "[1,-2.5,true,null,\"\xC3\xA9\"]");
  EXPECT_EQ(parseJson("\"x\""), Json("x"));
  EXPECT_EQ(parseJson("null"), Json(nullptr));
}

TEST(ParseJson, RejectsInvalidJson) {
  for (const std::string_view text :
       {"", " ", "{", "[1,]", "{\"a\":1,}", "nul", "'a'", "{a:1}", "1 2", "[1]x", "NaN", "01",
        "1e999", "\"\x01\"", "\"\\ud800\"", "// comment\n1", "\"\\x\"", "]"}) {
    EXPECT_EQ(parseJson(text), std::nullopt) << text;
  }
}

TEST(ParseJson, RejectsInvalidUtf8) {
  for (const std::string_view text :
       {"\"\xFF\"", "\"\xC0\xAF\"", "\"\xED\xA0\x80\"", "\"\xE2\x82\"", "\xFF", "{\"\x80\":1}"}) {
    EXPECT_EQ(parseJson(text), std::nullopt) << text;
  }
}

TEST(ParseJson, AcceptsTheMaximumNestingDepthAndRejectsOneMore) {
  EXPECT_TRUE(parseJson(nested(512)));
  EXPECT_FALSE(parseJson(nested(513)));
}

TEST(ParseJson, RejectsMillionsOfBracketsWithoutRecursion) {
  EXPECT_FALSE(parseJson(nested(5'000'000)));
  EXPECT_FALSE(parseJson(std::string(5'000'000, '{')));
}

TEST(ParseJson, CountsNeitherBracketsInStringsNorSiblings) {
  const std::string brackets(1000, '[');
  EXPECT_TRUE(parseJson(std::string("\"").append(brackets).append("\"")));
  EXPECT_TRUE(parseJson(std::string("[\"\\\"").append(brackets).append("\\\\\"]")));
  std::string siblings = "[[]";
  for (int index = 0; index < 1000; ++index)
    siblings.append(",[]");
  EXPECT_TRUE(parseJson(siblings + "]"));
}

TEST(JsonStringLiteral, IsValidJavaScriptInsideAScriptElement) {
  EXPECT_EQ(jsonStringLiteral("Europe/Berlin"), "\"Europe/Berlin\"");
  EXPECT_EQ(jsonStringLiteral("a\"b\\c\n\x01"), "\"a\\\"b\\\\c\\n\\u0001\"");
  EXPECT_EQ(jsonStringLiteral("\xE2\x80\xA8\xE2\x80\xA9"), "\"\\u2028\\u2029\"");
  EXPECT_EQ(jsonStringLiteral("</script>"), "\"<\\/script>\"");
  EXPECT_EQ(jsonStringLiteral("\xD0\xB6"), "\"\xD0\xB6\"");
  EXPECT_EQ(jsonStringLiteral(std::string_view("\0", 1)), "\"\\u0000\"");
}

TEST(JsonStringLiteral, ParsesBackToTheSameText) {
  const std::string text = "\\\"</\xE2\x80\xA8\xF0\x9F\x98\x80\t\\u2028";
  EXPECT_EQ(parseJson(jsonStringLiteral(text)), Json(text));
}

TEST(JsonStringLiteral, ReplacesInvalidUtf8) {
  EXPECT_EQ(jsonStringLiteral("a\xFF"), "\"a\xEF\xBF\xBD\"");
}

TEST(JsonMembers, AreNulloptIfMissingOrOfAnotherType) {
  const Json json = *parseJson(R"({"s":"x","b":true,"n":1.5,"i":2,"o":{"k":1},"a":[],"z":null})");
  EXPECT_EQ(stringMember(json, "s"), "x");
  EXPECT_EQ(stringMember(json, "n"), std::nullopt);
  EXPECT_EQ(stringMember(json, "missing"), std::nullopt);
  EXPECT_EQ(boolMember(json, "b"), true);
  EXPECT_EQ(boolMember(json, "i"), std::nullopt);
  EXPECT_EQ(numberMember(json, "n"), 1.5);
  EXPECT_EQ(numberMember(json, "i"), 2.0);
  EXPECT_EQ(numberMember(json, "b"), std::nullopt);
  EXPECT_EQ(numberMember(json, "z"), std::nullopt);
  ASSERT_NE(objectMember(json, "o"), nullptr);
  EXPECT_EQ(numberMember(*objectMember(json, "o"), "k"), 1.0);
  EXPECT_EQ(objectMember(json, "a"), nullptr);
  EXPECT_NE(arrayMember(json, "a"), nullptr);
  EXPECT_EQ(arrayMember(json, "o"), nullptr);
}

TEST(JsonMembers, AreNulloptInAValueThatIsNotAnObject) {
  for (const std::string text : {"null", "[]", "\"s\"", "1"}) {
    const Json json = *parseJson(text);
    EXPECT_EQ(stringMember(json, "s"), std::nullopt);
    EXPECT_EQ(objectMember(json, "s"), nullptr);
  }
}

}  // namespace
}  // namespace navora
