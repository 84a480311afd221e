#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/locale/CatalogCheck.h"

namespace navora::test {
namespace {

using Problems = std::vector<std::string>;

Problems problemsOf(const char* catalogs, const std::set<std::string>& keys) {
  return catalogProblems(Json::parse(catalogs), {"en", "fr"}, keys);
}

// Returns the errors of one French translation.
Problems problemsOf(const std::string& key, const std::string& text) {
  return catalogProblems({{"en", {{key, key == "Один" ? "One" : key}}}, {"fr", {{key, text}}}},
                         {"en", "fr"}, {key});
}

TEST(CatalogCheck, AcceptsCompleteCatalogs) {
  EXPECT_EQ(problemsOf(R"({"en": {"Да": "Yes", "Нет": "No"}, "fr": {"Да": "Oui", "Нет": "Non"}})",
                       {"Да", "Нет"}),
            Problems{});
}

TEST(CatalogCheck, ReportsMissingAndUnusedKeys) {
  EXPECT_EQ(
      problemsOf(R"({"en": {"Да": "Yes"}, "fr": {"Да": "Oui", "Нет": "Non"}})", {"Да", "Нет"}),
      Problems{"en: missing: Нет"});
  EXPECT_EQ(problemsOf(R"({"en": {"Да": "Yes"}, "fr": {"Да": "Oui", "Нет": "Non"}})", {"Да"}),
            Problems{"fr: unused: Нет"});
}

TEST(CatalogCheck, ReportsMissingAndUnsupportedLocales) {
  EXPECT_EQ(problemsOf(R"({"en": {"Да": "Yes"}})", {"Да"}), Problems{"fr: no catalog"});
  EXPECT_EQ(problemsOf(R"({"en": {"Да": "Yes"}, "fr": {"Да": "Oui"}, "it": {"Да": "Sì"}})", {"Да"}),
            Problems{"it: unsupported"});
}

TEST(CatalogCheck, ReportsMalformedCatalogs) {
  EXPECT_EQ(problemsOf("[]", {"Да"}), Problems{"the resource is no object"});
  EXPECT_EQ(problemsOf(R"({"en": [], "fr": {"Да": 1}})", {"Да"}),
            (Problems{"en: no object", "fr: no text: Да"}));
}

TEST(CatalogCheck, ReportsTranslationsThatDoNotMatchTheirKey) {
  EXPECT_EQ(problemsOf("Один", "Un"), Problems{});
  EXPECT_EQ(problemsOf("Один", ""), Problems{"fr: empty: Один"});
  EXPECT_EQ(problemsOf("Один", "Оne"), Problems{"fr: Cyrillic: Один"});
  EXPECT_EQ(problemsOf("Один", "{n}"), Problems{"fr: other placeholders: Один"});
  EXPECT_EQ(problemsOf("Один", "U\nn"), Problems{"fr: other line breaks: Один"});
}

TEST(CatalogCheck, ComparesPlaceholdersByName) {
  EXPECT_EQ(problemsOf("{a} + {b_2}", "{b_2}, {a}"), Problems{});
  EXPECT_EQ(problemsOf("{a} + {b_2}", "{a}, {b}"), Problems{"fr: other placeholders: {a} + {b_2}"});
  EXPECT_EQ(problemsOf("{a} + {b_2}", "{a}"), Problems{"fr: other placeholders: {a} + {b_2}"});
}

TEST(CatalogCheck, ReportsLeadingAndTrailingWhiteSpace) {
  for (const std::string text : {" Un", "Un ", "Un\t", "\u00A0Un", "Un\u3000"})
    EXPECT_EQ(problemsOf("Один", text), Problems{"fr: outer white space: Один"}) << text;
  EXPECT_EQ(problemsOf("1\n2", "1 \n2"), Problems{"fr: outer white space: 1\n2"});
}

TEST(CatalogCheck, ReportsTypewriterPunctuation) {
  for (const std::string text : {"L'un", "\"Un\"", "Un..."})
    EXPECT_EQ(problemsOf("Один", text), Problems{"fr: typewriter marks: Один"}) << text;
  EXPECT_EQ(problemsOf("Один", "L’un…"), Problems{});
}

TEST(CatalogCheck, RequiresNoBreakSpacesInFrench) {
  for (const std::string text : {"Un : deux", "Un ?", "« Un\u00A0»", "«\u00A0Un »"})
    EXPECT_EQ(problemsOf("Один", text), Problems{"fr: breakable mark: Один"}) << text;
  EXPECT_EQ(problemsOf("Один", "Un\u00A0: «\u00A0deux\u00A0»"), Problems{});
}

TEST(DesktopWordCheck, AcceptsOtherWordsForSomeTexts) {
  const Json catalogs{{"en", {{"Да", "Yes"}, {"Нет", "No"}}}, {"fr", {{"Да", "Oui"}}}};
  EXPECT_EQ(desktopWordProblems({{"en", {{"Да", "Sure"}}}}, catalogs), Problems{});
}

TEST(DesktopWordCheck, ReportsWhatReplacesNoText) {
  const Json catalogs{{"en", {{"Да", "Yes"}}}, {"fr", {{"Да", "Oui"}}}};
  EXPECT_EQ(desktopWordProblems({{"en", {{"Да", "Yes"}, {"Нет", "No"}}}, {"it", {{"Да", "Sì"}}}},
                                catalogs),
            (Problems{"en: unused: Нет", "en: needless: Да", "it: unsupported"}));
}

TEST(DesktopWordCheck, ReportsTextsThatDoNotMatchTheirKey) {
  const Json catalogs{{"fr", {{"{a} один", "{a} un"}}}};
  EXPECT_EQ(desktopWordProblems({{"fr", {{"{a} один", "seul"}}}}, catalogs),
            Problems{"fr: other placeholders: {a} один"});
  EXPECT_EQ(desktopWordProblems({{"fr", {{"{a} один", 1}}}}, catalogs),
            Problems{"fr: no text: {a} один"});
  EXPECT_EQ(desktopWordProblems("[]", catalogs), Problems{"the resource is no object"});
}

}  // namespace
}  // namespace navora::test
