#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

constexpr const char* catalogs = R"({
  "en": {
    "Навора": "Navora",
    "Сохранить запись — {CAPTURE_MOD}+Enter": "Save note: {CAPTURE_MOD}+Enter",
    "{a}, {b}, {a}": "{b} {a} {b}",
    "пусто": "",
    "число": 7,
    "нет": null,
    "список": ["text"]
  },
  "pt-BR": {"Навора": "Navora BR"}
})";

class DesktopLocaleTranslateTest : public testing::Test {
 protected:
  void SetUp() override {
    locale_.setCatalogs(catalogs);
    DesktopLocale::requested = "en";
  }

  LocaleScope locale_;
};

TEST_F(DesktopLocaleTranslateTest, ReturnsTheTextOfTheCurrentLanguage) {
  EXPECT_EQ(L("Навора"), "Navora");
  DesktopLocale::requested = "pt-BR";
  EXPECT_EQ(L("Навора"), "Navora BR");
}

TEST_F(DesktopLocaleTranslateTest, IsCalledByTheShorthand) {
  EXPECT_EQ(DesktopLocale::translate("Навора"), L("Навора"));
  EXPECT_EQ(DesktopLocale::translate("{a}", {{"a", "1"}}), L("{a}", {{"a", "1"}}));
}

TEST_F(DesktopLocaleTranslateTest, ShowsTheKeyInALanguageWithoutACatalog) {
  for (const char* code : {"ru", "ja"}) {
    DesktopLocale::requested = code;
    EXPECT_EQ(L("Навора"), "Навора");
  }
}

TEST_F(DesktopLocaleTranslateTest, ShowsAKeyThatHasNoTranslation) {
  EXPECT_EQ(L("Обновить"), "Обновить");
  EXPECT_EQ(L("навора"), "навора") << "keys are exact";
  EXPECT_EQ(L(""), "");
}

TEST_F(DesktopLocaleTranslateTest, ReplacesThePlaceholdersOfAKeyThatHasNoTranslation) {
  EXPECT_EQ(L("Версия {version}", {{"version", "1.2"}}), "Версия 1.2");
}

TEST_F(DesktopLocaleTranslateTest, ShowsTheKeyIfTheCatalogHasNoText) {
  EXPECT_EQ(L("число"), "число");
  EXPECT_EQ(L("нет"), "нет");
  EXPECT_EQ(L("список"), "список");
}

TEST_F(DesktopLocaleTranslateTest, ShowsAnEmptyTranslation) {
  EXPECT_EQ(L("пусто"), "");
}

TEST_F(DesktopLocaleTranslateTest, ReplacesThePlaceholdersOfATranslation) {
  EXPECT_EQ(L("Сохранить запись — {CAPTURE_MOD}+Enter", {{"CAPTURE_MOD", "⌘"}}),
            "Save note: ⌘+Enter");
}

TEST_F(DesktopLocaleTranslateTest, ReplacesEveryOccurrenceOfEveryPlaceholder) {
  EXPECT_EQ(L("{a}, {b}, {a}", {{"a", "1"}, {"b", "2"}}), "2 1 2");
  EXPECT_EQ(L("{x}{x} {x}", {{"x", "1"}}), "11 1");
}

TEST_F(DesktopLocaleTranslateTest, KeepsUnknownPlaceholdersAndIgnoresUnusedParameters) {
  EXPECT_EQ(L("{a} {c} {A}", {{"a", "1"}, {"spare", "2"}}), "1 {c} {A}");
}

TEST_F(DesktopLocaleTranslateTest, AcceptsAnEmptyParameter) {
  EXPECT_EQ(L("[{a}]", {{"a", ""}}), "[]");
}

TEST_F(DesktopLocaleTranslateTest, LeavesPlaceholdersInTheValuesOfParameters) {
  EXPECT_EQ(L("{a} {b}", {{"a", "{b}"}, {"b", "{a}"}}), "{b} {a}");
  EXPECT_EQ(L("{a}b}", {{"a", "{"}, {"b", "1"}}), "{b}");
  EXPECT_EQ(L("{{a}} {", {{"a", "1"}}), "{1} {");
}

class DesktopLocaleBrokenCatalogTest : public testing::TestWithParam<const char*> {
 protected:
  LocaleScope locale_;
};

TEST_P(DesktopLocaleBrokenCatalogTest, ShowsEverythingInTheSourceLanguage) {
  locale_.setCatalogs(GetParam());
  DesktopLocale::requested = "en";
  EXPECT_EQ(L("Навора"), "Навора");
}

INSTANTIATE_TEST_SUITE_P(Catalogs, DesktopLocaleBrokenCatalogTest,
                         testing::Values("", "{", "null", "[]", R"("en")",
                                         R"([{"en": {"Навора": "Navora"}}])",
                                         R"({"en": {"Навора": "Navora"}} x)",
                                         R"({"en": {"Навора": "Navora"},})",
                                         R"({"en": ["Навора", "Navora"]})",
                                         R"({"en": {"Навора": "Navora"}, "de": "wrong"})",
                                         R"({"en": {"Навора": "Navora"}, "de": null})"));

TEST(DesktopLocaleCatalog, IsOptional) {
  const LocaleScope locale;
  DesktopLocale::requested = "en";
  EXPECT_EQ(L("Навора"), "Навора");
}

// A second catalog with the desktop's own words.
class DesktopWordsTest : public testing::Test {
 protected:
  void configure(std::optional<std::string> words) {
    DesktopLocale::configure([] { return std::vector<std::string>{"de"}; },
                             [] { return R"({"de": {"Вид": "Darstellung", "Окно": "Fenster"}})"; },
                             [words = std::move(words)] { return words; });
  }

  LocaleScope locale_;
};

TEST_F(DesktopWordsTest, TakeThePlaceOfTheCatalogsTexts) {
  configure(R"({"de": {"Вид": "Ansicht"}, "fr": {"Вид": "Affichage"}})");
  EXPECT_EQ(L("Вид"), "Ansicht");
  EXPECT_EQ(L("Окно"), "Fenster");
  DesktopLocale::requested = "fr";
  EXPECT_EQ(L("Вид"), "Affichage");
  EXPECT_EQ(L("Окно"), "Окно");
}

TEST_F(DesktopWordsTest, AreLeftOutAsAWholeIfTheyAreDamaged) {
  for (const auto& damaged :
       {std::optional<std::string>(), std::optional<std::string>(R"({"de": {"Вид": "Ansicht"})"),
        std::optional<std::string>(R"({"de": {"Вид": "Ansicht"}, "fr": []})")}) {
    configure(damaged);
    EXPECT_EQ(L("Вид"), "Darstellung");
  }
}

// Counts how often the resource is read.
class DesktopLocaleCatalogReadTest : public testing::Test {
 protected:
  void configure(std::string text) {
    DesktopLocale::configure([] { return std::vector<std::string>{"en"}; },
                             [this, text] {
                               ++reads_;
                               return text;
                             });
  }

  LocaleScope locale_;
  int reads_ = 0;
};

TEST_F(DesktopLocaleCatalogReadTest, HappensOnceAtTheFirstTranslation) {
  configure(R"({"en": {"Навора": "Navora"}})");
  EXPECT_EQ(DesktopLocale::current(), "en");
  EXPECT_EQ(reads_, 0);
  EXPECT_EQ(L("Навора"), "Navora");
  DesktopLocale::requested = "de";
  EXPECT_EQ(L("Обновить"), "Обновить");
  EXPECT_EQ(reads_, 1);
}

TEST_F(DesktopLocaleCatalogReadTest, IsNotRepeatedForABrokenResource) {
  configure("{");
  EXPECT_EQ(L("Навора"), "Навора");
  EXPECT_EQ(L("Навора"), "Навора");
  EXPECT_EQ(reads_, 1);
}

TEST_F(DesktopLocaleCatalogReadTest, IsRepeatedWhenTheSourcesAreReplaced) {
  configure(R"({"en": {"Навора": "Navora"}})");
  EXPECT_EQ(L("Навора"), "Navora");
  configure(R"({"en": {"Навора": "Navora 2"}})");
  EXPECT_EQ(L("Навора"), "Navora 2");
  EXPECT_EQ(reads_, 2);
}

}  // namespace
}  // namespace navora
