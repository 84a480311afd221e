#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "capture/CaptureAppearance.h"
#include "unit/capture/AppearanceDictionary.h"

namespace navora {
namespace {

const Json& dictionary = appearanceDictionary();

std::optional<CaptureAppearance> readWith(const std::string& key, const Json& value) {
  Json changed = dictionary;
  changed[key] = value;
  return CaptureAppearance::read(changed);
}

TEST(CaptureAppearanceRead, ReadsEveryField) {
  const auto read = CaptureAppearance::read(dictionary);
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->dark);
  EXPECT_EQ(read->surface, (Color{1 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->surfaceEnd, (Color{2 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->border, (Color{3 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->focus, (Color{4 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->ink, (Color{5 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->caret, (Color{6 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->placeholderColor, (Color{7 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->muted, (Color{8 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->button, (Color{9 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->buttonHover, (Color{10 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->buttonInk, (Color{11 / 255.0, 0, 0, 1}));
  EXPECT_EQ(read->radius, 12);
  EXPECT_EQ(read->padding, 13.5);
  EXPECT_EQ(read->fontSize, 14);
  EXPECT_EQ(read->lineHeight, 15);
  EXPECT_EQ(read->font, "serif");
  EXPECT_EQ(read->placeholder, "Write");
  EXPECT_EQ(read->theme, "system");
}

TEST(CaptureAppearanceRead, RequiresEveryKeyExceptTheTheme) {
  for (const auto& [key, value] : dictionary.items()) {
    Json missing = dictionary;
    missing.erase(key);
    EXPECT_EQ(CaptureAppearance::read(missing).has_value(), key == "theme") << key;
  }
}

TEST(CaptureAppearanceRead, RejectsValuesOfTheWrongType) {
  for (const auto& [key, value] : dictionary.items()) {
    for (const Json& wrong : {Json(), Json::array(), Json::object(), Json("?")}) {
      if (key == "placeholder" && wrong.is_string()) continue;
      EXPECT_FALSE(readWith(key, wrong)) << key << wrong;
    }
    EXPECT_EQ(readWith(key, true).has_value(), value.is_boolean()) << key;
    EXPECT_EQ(readWith(key, 12).has_value(), value.is_number()) << key;
  }
}

TEST(CaptureAppearanceRead, RejectsAnythingButAnObject) {
  for (const Json& body : {Json(), Json::object(), Json::array({dictionary}), Json("dark")}) {
    EXPECT_FALSE(CaptureAppearance::read(body)) << body;
  }
}

TEST(CaptureAppearanceRead, DerivesAMissingThemeFromDark) {
  Json plain = dictionary;
  plain.erase("theme");
  EXPECT_EQ(CaptureAppearance::read(plain)->theme, "light");
  plain["dark"] = true;
  EXPECT_EQ(CaptureAppearance::read(plain)->theme, "dark");
}

TEST(CaptureAppearanceRead, AcceptsThreeThemesAndThreeFonts) {
  for (const char* theme : {"system", "light", "dark"})
    EXPECT_EQ(readWith("theme", theme)->theme, theme);
  for (const char* theme : {"", "Dark", "auto"})
    EXPECT_FALSE(readWith("theme", theme)) << theme;
  for (const char* font : {"sans", "serif", "mono"})
    EXPECT_EQ(readWith("font", font)->font, font);
  for (const char* font : {"", "Sans", "monospace"})
    EXPECT_FALSE(readWith("font", font)) << font;
}

TEST(CaptureAppearanceRead, AcceptsNumbersWithinTheirBoundsAndClampsNone) {
  const struct {
    const char* key;
    double minimum;
    double maximum;
  } bounds[] = {
      {"radius", 0, 48}, {"padding", 8, 48}, {"fontSize", 10, 32}, {"lineHeight", 10, 64}};
  for (const auto& [key, minimum, maximum] : bounds) {
    EXPECT_TRUE(readWith(key, minimum)) << key;
    EXPECT_TRUE(readWith(key, maximum)) << key;
    EXPECT_FALSE(readWith(key, minimum - 0.1)) << key;
    EXPECT_FALSE(readWith(key, maximum + 0.5)) << key;
    EXPECT_FALSE(readWith(key, std::numeric_limits<double>::quiet_NaN())) << key;
    EXPECT_FALSE(readWith(key, std::numeric_limits<double>::infinity())) << key;
  }
}

TEST(CaptureAppearanceRead, AcceptsPlaceholdersOfUpToTwoHundredCharacters) {
  std::string characters;
  for (int index = 0; index < 200; ++index)
    characters += "e\u0301";
  EXPECT_EQ(readWith("placeholder", characters)->placeholder, characters);
  EXPECT_FALSE(readWith("placeholder", characters + "e"));
  EXPECT_EQ(readWith("placeholder", "")->placeholder, "");
}

TEST(CaptureAppearanceFallback, HasAPaletteForLightAndDark) {
  const auto dark = CaptureAppearance::fallback(true);
  EXPECT_TRUE(dark.dark);
  EXPECT_EQ(dark.surface, CaptureAppearance::color("#292725"));
  EXPECT_EQ(dark.buttonHover, CaptureAppearance::color("#f05b77"));
  EXPECT_EQ(dark.buttonInk, CaptureAppearance::color("#20201e"));
  EXPECT_EQ(dark.radius, 23);
  EXPECT_EQ(dark.padding, 24);
  const auto light = CaptureAppearance::fallback(false);
  EXPECT_FALSE(light.dark);
  EXPECT_EQ(light.surface, CaptureAppearance::color("#ffffff"));
  EXPECT_EQ(light.placeholderColor, CaptureAppearance::color("#c2c2c2"));
  EXPECT_EQ(light.buttonHover, light.button);
  EXPECT_EQ(light.radius, 18);
  EXPECT_EQ(light.padding, 16);
  for (const auto& palette : {dark, light}) {
    EXPECT_EQ(palette.fontSize, 17);
    EXPECT_EQ(palette.lineHeight, 24.65);
    EXPECT_EQ(palette.font, "sans");
    EXPECT_EQ(palette.placeholder, "");
    EXPECT_EQ(palette.theme, "system");
  }
}

TEST(CaptureAppearanceFollowing, IsReplacedByTheFallbackInThePagesFont) {
  const auto light = *CaptureAppearance::read(dictionary);
  auto expected = CaptureAppearance::fallback(true);
  expected.fontSize = 14;
  expected.lineHeight = 15;
  expected.font = "serif";
  expected.placeholder = "Write";
  EXPECT_EQ(light.followingSystemAppearance(true), expected);
  EXPECT_EQ(light.followingSystemAppearance(false), light);
}

TEST(CaptureAppearanceFollowing, KeepsExplicitThemes) {
  for (const char* theme : {"light", "dark"}) {
    const auto chosen = *readWith("theme", theme);
    EXPECT_EQ(chosen.followingSystemAppearance(true), chosen);
    EXPECT_EQ(chosen.followingSystemAppearance(false), chosen);
  }
}

TEST(CaptureAppearance, ProvidesTheWindowAppearanceAndTheEditorStyle) {
  EXPECT_EQ(readWith("theme", "system")->windowAppearance(), WindowAppearance::system);
  EXPECT_EQ(readWith("theme", "dark")->windowAppearance(), WindowAppearance::dark);
  EXPECT_EQ(readWith("theme", "light")->windowAppearance(), WindowAppearance::light);
  const auto appearance = *readWith("font", "mono");
  EXPECT_EQ(appearance.editorStyle(),
            (CaptureEditorStyle{FontFamily::mono, 14, 15, appearance.ink, appearance.caret,
                                appearance.placeholderColor}));
  EXPECT_EQ(readWith("font", "sans")->editorStyle().family, FontFamily::sans);
  EXPECT_EQ(readWith("font", "serif")->editorStyle().family, FontFamily::serif);
}

}  // namespace
}  // namespace navora
