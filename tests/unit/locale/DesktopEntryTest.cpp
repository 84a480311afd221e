#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"
#include "support/Text.h"
#include "unit/locale/SourceTexts.h"

#ifndef NAVORA_SOURCE_ROOT
#error "NAVORA_SOURCE_ROOT must name the folder that holds resources"
#endif

namespace navora::test {
namespace {

const std::filesystem::path resources = std::filesystem::path(NAVORA_SOURCE_ROOT) / "resources";

// The texts of the desktop entry, which launchers show.
class DesktopEntryTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string group;
    for (const auto& line :
         split(readTextFile(resources / "linux" / "example.navora.Navora.desktop"), '\n')) {
      if (line.starts_with("[")) group = line;
      if (const auto equals = line.find('='); equals != std::string::npos)
        texts_[group][line.substr(0, equals)] = line.substr(equals + 1);
    }
  }

  // Returns a key's text in a language; empty if it has none of its own.
  std::string text(const std::string& group, const std::string& key, const std::string& language) {
    const std::string suffix = language == "en" ? "" : "[" + replaceAll(language, "-", "_") + "]";
    return texts_[group][key + suffix];
  }

  std::map<std::string, std::map<std::string, std::string>> texts_;
};

TEST_F(DesktopEntryTest, HasEveryTextInEveryLanguage) {
  for (const auto& language : DesktopLocale::supported()) {
    for (const std::string key : {"GenericName", "Comment", "Keywords"})
      EXPECT_NE(text("[Desktop Entry]", key, language), "") << key << " " << language;
    EXPECT_TRUE(text("[Desktop Entry]", "Keywords", language).ends_with(";")) << language;
  }
  EXPECT_EQ(text("[Desktop Entry]", "Name", "en"), "Navora");
  EXPECT_EQ(text("[Desktop Entry]", "Name", "ru"), "Навора");
}

TEST_F(DesktopEntryTest, CallsTheActionAsTheMenuDoes) {
  LocaleScope locale;
  DesktopLocale::configure([] { return std::vector<std::string>{}; },
                           [] { return readTextFile(resources / "i18n-catalog.json"); },
                           [] { return readTextFile(resources / "linux" / "i18n-catalog.json"); });
  for (const auto& language : DesktopLocale::supported()) {
    DesktopLocale::requested = language;
    EXPECT_EQ(text("[Desktop Action capture]", "Name", language), L("Новая запись"));
  }
}

}  // namespace
}  // namespace navora::test
