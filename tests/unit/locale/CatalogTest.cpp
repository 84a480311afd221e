#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"
#include "support/Json.h"
#include "unit/locale/CatalogCheck.h"
#include "unit/locale/SourceTexts.h"

#ifndef NAVORA_SOURCE_ROOT
#error "NAVORA_SOURCE_ROOT must name the folder that holds src and resources"
#endif

namespace navora::test {
namespace {

const std::filesystem::path sourceRoot = NAVORA_SOURCE_ROOT;

std::vector<std::string> translatedLocales() {
  auto locales = DesktopLocale::supported();
  std::erase(locales, "ru");
  return locales;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines)
    text += "\n  " + line;
  return text;
}

// Returns an object's keys in their order; with `others`, only those that it has as well.
std::vector<std::string> keysOf(const nlohmann::ordered_json& object,
                                const nlohmann::ordered_json* others = nullptr) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items())
    if (others == nullptr || others->contains(key)) keys.push_back(key);
  return keys;
}

// The texts of the code and the shipped catalogs, read once for all tests.
class Catalog : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    texts_ = findSourceTexts(readSourceFiles(sourceRoot / "src"));
    resource_ = readTextFile(sourceRoot / "resources" / "i18n-catalog.json");
    linuxWords_ = readTextFile(sourceRoot / "resources" / "linux" / "i18n-catalog.json");
  }

  LocaleScope locale_;
  static inline SourceTexts texts_;
  static inline std::string resource_;
  static inline std::string linuxWords_;
};

TEST_F(Catalog, CoversKnownTextsOfTheCode) {
  for (const std::string known :
       {"Навора", "Навора пока недоступна", "Проверьте подключение к интернету.",
        "Проверьте подключение к интернету и попробуйте ещё раз.\n"
        "Ваши записи остаются на сервере.",
        "Попробовать снова", "Открыть в браузере", "Окно приложения нужно перезагрузить.",
        "Продолжить", "Отмена", "Сохранить", "Не удалось скачать файл"}) {
    EXPECT_TRUE(texts_.keys.contains(known)) << known;
  }
}

TEST_F(Catalog, IsComparedWithEveryTextOfTheCode) {
  EXPECT_TRUE(texts_.problems.empty()) << joined(texts_.problems);
}

TEST_F(Catalog, TranslatesEveryTextIntoEveryLanguage) {
  const auto json = parseJson(resource_);
  ASSERT_TRUE(json);
  const auto problems = catalogProblems(*json, translatedLocales(), texts_.keys);
  EXPECT_TRUE(problems.empty()) << joined(problems);
}

TEST_F(Catalog, HasTheTextsThatTheWordsOfLinuxReplace) {
  const auto catalogs = parseJson(resource_);
  const auto words = parseJson(linuxWords_);
  ASSERT_TRUE(catalogs && words);
  const auto problems = desktopWordProblems(*words, *catalogs);
  EXPECT_TRUE(problems.empty()) << joined(problems);
}

// A canonical form keeps changes readable. This also finds duplicate keys, of which serializing
// keeps only one.
TEST_F(Catalog, IsSortedAndFormattedConsistently) {
  const auto json = nlohmann::ordered_json::parse(resource_, nullptr, false);
  ASSERT_TRUE(json.is_object());
  EXPECT_EQ(json.dump(2) + "\n", resource_);

  for (const auto& [locale, catalog] : json.items())
    EXPECT_EQ(keysOf(catalog), keysOf(json.front())) << locale;
}

TEST_F(Catalog, HasTheOrderOfTheWordsOfLinux) {
  const auto words = nlohmann::ordered_json::parse(linuxWords_, nullptr, false);
  ASSERT_TRUE(words.is_object());
  EXPECT_EQ(words.dump(2) + "\n", linuxWords_);

  const auto json = nlohmann::ordered_json::parse(resource_, nullptr, false);
  EXPECT_EQ(keysOf(words), keysOf(json, &words));
  for (const auto& [locale, texts] : words.items())
    EXPECT_EQ(keysOf(texts), keysOf(json.front(), &texts)) << locale;
}

TEST_F(Catalog, IsWhatTranslateReturns) {
  const auto json = parseJson(resource_);
  ASSERT_TRUE(json);
  for (const auto& locale : translatedLocales()) {
    locale_.setCatalogs(resource_);
    locale_.prefer({locale});
    for (const auto& key : texts_.keys)
      EXPECT_EQ(L(key), stringMember(json->at(locale), key)) << locale;
  }
}

TEST_F(Catalog, LeavesTheSourceLanguageUnchanged) {
  locale_.setCatalogs(resource_);
  locale_.prefer({"ru"});
  for (const auto& key : texts_.keys)
    EXPECT_EQ(L(key), key);
}

TEST_F(Catalog, KeepsTheProductNameInEveryLanguage) {
  const auto json = parseJson(resource_);
  ASSERT_TRUE(json);
  const auto words = parseJson(linuxWords_);
  ASSERT_TRUE(words);
  for (const auto* each : {&*json, &*words}) {
    for (const auto& [locale, catalog] : each->items()) {
      for (const auto& [key, text] : catalog.items()) {
        if (key.find("Навора") == std::string::npos) continue;
        EXPECT_NE(text.get<std::string>().find("Navora"), std::string::npos)
            << locale << ": " << key;
      }
    }
  }
}

}  // namespace
}  // namespace navora::test
