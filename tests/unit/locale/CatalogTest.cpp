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

// The texts of the code and the shipped catalogs, read once for all tests.
class Catalog : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    texts_ = findSourceTexts(readSourceFiles(sourceRoot / "src"));
    resource_ = readTextFile(sourceRoot / "resources" / "i18n-catalog.json");
  }

  LocaleScope locale_;
  static inline SourceTexts texts_;
  static inline std::string resource_;
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

// A canonical form keeps changes readable. This also finds duplicate keys, of which serializing
// keeps only one.
TEST_F(Catalog, IsSortedAndFormattedConsistently) {
  const auto json = nlohmann::ordered_json::parse(resource_, nullptr, false);
  ASSERT_TRUE(json.is_object());
  EXPECT_EQ(json.dump(2) + "\n", resource_);

  const auto keysOf = [](const nlohmann::ordered_json& catalog) {
    std::vector<std::string> keys;
    for (const auto& [key, text] : catalog.items())
      keys.push_back(key);
    return keys;
  };
  for (const auto& [locale, catalog] : json.items())
    EXPECT_EQ(keysOf(catalog), keysOf(json.front())) << locale;
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
  for (const auto& [locale, catalog] : json->items()) {
    for (const auto& [key, text] : catalog.items()) {
      if (key.find("Навора") == std::string::npos) continue;
      EXPECT_NE(text.get<std::string>().find("Navora"), std::string::npos) << locale << ": " << key;
    }
  }
}

}  // namespace
}  // namespace navora::test
