#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/locale/SourceTexts.h"

namespace navora::test {
namespace {

using Keys = std::set<std::string>;
using Problems = std::vector<std::string>;

Keys keysOf(const std::string& source) {
  return findSourceTexts({{"Sample.cpp", source}}).keys;
}

Problems problemsOf(const std::string& source) {
  return findSourceTexts({{"Sample.cpp", source}}).problems;
}

TEST(SourceTexts, FindsLiterals) {
  EXPECT_EQ(keysOf(R"(show(L("Да"), L( "Нет" )); return L("Ок");)"), (Keys{"Да", "Нет", "Ок"}));
  EXPECT_EQ(keysOf(R"(navora::L("Да"); [alert setTitle:toNSString(L("Нет"))];)"),
            (Keys{"Да", "Нет"}));
}

TEST(SourceTexts, JoinsAdjacentLiterals) {
  EXPECT_EQ(keysOf("L(\"Раз, \"\n  \"два, \" // \"не три\"\n  u8\"три\")"), Keys{"Раз, два, три"});
}

TEST(SourceTexts, DecodesEscapes) {
  EXPECT_EQ(keysOf(R"(L("а\n\"б\"\\\u00A0\xC2\xA0\t"))"), Keys{"а\n\"б\"\\\u00A0\u00A0\t"});
  EXPECT_EQ(keysOf("L(R\"x(а\\n\"б\")x\")"), Keys{"а\\n\"б\""});
}

TEST(SourceTexts, UsesTheFirstArgumentOnly) {
  EXPECT_EQ(keysOf(R"(L("Версия {version}", {{"version", text("1", 2)}}))"),
            Keys{"Версия {version}"});
}

TEST(SourceTexts, UsesEveryLiteralOfAConditional) {
  EXPECT_EQ(keysOf(R"(constexpr auto no = "Нет"; L(agreed ? "Да" : no))"), (Keys{"Да", "Нет"}));
}

TEST(SourceTexts, FollowsNamedConstants) {
  EXPECT_EQ(keysOf(R"(constexpr std::string_view name = "Да"; L(name))"), Keys{"Да"});
  EXPECT_EQ(keysOf(R"(constexpr std::string_view name{"Да"}; L(std::string(name)))"), Keys{"Да"});
  EXPECT_EQ(keysOf(R"(const char name[] = "Да" "!"; L(name))"), Keys{"Да!"});
}

TEST(SourceTexts, LooksUpConstantsInHeadersAfterTheFileItself) {
  const SourceFile header{"Names.h", R"(inline constexpr std::string_view name = "Заголовок";)"};
  const SourceFile other{"Other.cpp", R"(constexpr auto name = "Другой"; L("Другой");)"};
  EXPECT_EQ(findSourceTexts({header, other, {"User.cpp", "L(texts::name)"}}).keys,
            (Keys{"Заголовок", "Другой"}));
  EXPECT_EQ(
      findSourceTexts({header, {"User.cpp", R"(constexpr auto name = "Свой"; L(name))"}}).keys,
      Keys{"Свой"});
}

TEST(SourceTexts, UsesTheRussianLiteralsOfTheFileForAVariable) {
  EXPECT_EQ(keysOf(R"(Item items[] = {{"Файл", "f"}, {"Правка", "e"}}; L(item.title))"),
            (Keys{"Файл", "Правка"}));
}

TEST(SourceTexts, ReportsCallsThatItCannotFollow) {
  EXPECT_EQ(problemsOf("void show(Text key) {\n  L(key);\n}"),
            Problems{"Sample.cpp:2: the text given to L cannot be followed to a literal"});
}

TEST(SourceTexts, ReportsRussianTextsThatAreNotTranslated) {
  EXPECT_EQ(problemsOf("// Да\n/*\n*/ show(\"Да\", L(\"Нет\"));"),
            Problems{"Sample.cpp:3: does not pass through L: Да"});
}

TEST(SourceTexts, IgnoresTextThatIsNotACall) {
  for (const std::string source : {
           R"(// L("Да"))",
           R"(/* L("Да") */)",
           R"cpp(HTML("x");
                 size.L;
                 L"x";
                 'L';
                 "L(\"x\")";)cpp",
           R"(std::string L(std::string_view key, const Parameters& parameters = {});)",
       }) {
    const auto texts = findSourceTexts({{"Sample.cpp", source}});
    EXPECT_EQ(texts.keys, Keys{}) << source;
    EXPECT_EQ(texts.problems, Problems{}) << source;
  }
}

TEST(SourceTexts, TerminatesOnATruncatedSource) {
  for (const std::string source : {"L(\"Да", "L(R\"x(Да", "L(\"Да\"", "L(\"Да\\", "L(\"\\u04",
                                   "L(/*", "L('", "L(R\"", "name[", "L("})
    EXPECT_LE(keysOf(source).size(), 1U) << source;
}

TEST(SourceTexts, HandlesQuotesInCharactersAndNumbers) {
  EXPECT_EQ(keysOf(R"(take('"'); take('\''); take(10'000); L("Да");)"), Keys{"Да"});
  EXPECT_EQ(keysOf(R"(take("\\"); L("Да");)"), Keys{"Да"});
}

}  // namespace
}  // namespace navora::test
