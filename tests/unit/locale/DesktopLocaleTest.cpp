#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

using testing::ElementsAre;

TEST(DesktopLocale, SupportsSevenLanguagesOfWhichTheFirstIsTheSource) {
  EXPECT_THAT(DesktopLocale::supported(), ElementsAre("ru", "en", "es", "pt-BR", "de", "fr", "ja"));
}

struct Normalization {
  std::string tag;
  std::optional<std::string> locale;
};

class DesktopLocaleNormalizeTest : public testing::TestWithParam<Normalization> {};

TEST_P(DesktopLocaleNormalizeTest, ReturnsTheSupportedCodeOrNullopt) {
  EXPECT_EQ(DesktopLocale::normalize(GetParam().tag), GetParam().locale) << GetParam().tag;
}

INSTANTIATE_TEST_SUITE_P(Supported, DesktopLocaleNormalizeTest,
                         testing::Values(Normalization{"ru", "ru"}, Normalization{"en", "en"},
                                         Normalization{"es", "es"}, Normalization{"de", "de"},
                                         Normalization{"fr", "fr"}, Normalization{"ja", "ja"},
                                         Normalization{"en-GB", "en"}, Normalization{"EN_us", "en"},
                                         Normalization{"de-Latn-AT", "de"},
                                         Normalization{"ja_JP", "ja"}, Normalization{"en-", "en"}));

INSTANTIATE_TEST_SUITE_P(EveryPortuguese, DesktopLocaleNormalizeTest,
                         testing::Values(Normalization{"pt", "pt-BR"},
                                         Normalization{"pt-BR", "pt-BR"},
                                         Normalization{"PT_br", "pt-BR"},
                                         Normalization{"pt-PT", "pt-BR"},
                                         Normalization{"pt_AO", "pt-BR"}));

INSTANTIATE_TEST_SUITE_P(EmptyPiecesDropped, DesktopLocaleNormalizeTest,
                         testing::Values(Normalization{"-en", "en"}, Normalization{"__fr-CA", "fr"},
                                         Normalization{"-_-pt", "pt-BR"}));

INSTANTIATE_TEST_SUITE_P(
    None, DesktopLocaleNormalizeTest,
    testing::Values(Normalization{"", std::nullopt}, Normalization{"-", std::nullopt},
                    Normalization{"_", std::nullopt}, Normalization{"zh-Hans", std::nullopt},
                    Normalization{"it", std::nullopt}, Normalization{"system", std::nullopt},
                    Normalization{"eng", std::nullopt}, Normalization{"por", std::nullopt},
                    Normalization{" en", std::nullopt}, Normalization{"en ", std::nullopt},
                    Normalization{"e", std::nullopt}, Normalization{"zh-en", std::nullopt},
                    Normalization{"\xFF", std::nullopt}));

TEST(DesktopLocaleResolve, PutsAnExplicitSettingFirst) {
  EXPECT_EQ(DesktopLocale::resolve("de", {"ja"}, "fr"), "de");
  EXPECT_EQ(DesktopLocale::resolve("pt-BR", {"ja"}, "fr"), "pt-BR");
  EXPECT_EQ(DesktopLocale::resolve("pt-BR", {}, std::nullopt), "pt-BR");
}

TEST(DesktopLocaleResolve, NormalizesAnExplicitSetting) {
  EXPECT_EQ(DesktopLocale::resolve("EN_us", {"ja"}, std::nullopt), "en");
}

TEST(DesktopLocaleResolve, TreatsAnUnsupportedSettingLikeSystem) {
  EXPECT_EQ(DesktopLocale::resolve("xx", {"ja"}, std::nullopt), "ja");
  EXPECT_EQ(DesktopLocale::resolve("it", {}, "es"), "es");
  EXPECT_EQ(DesktopLocale::resolve("", {"ja"}, std::nullopt), "ja");
}

TEST(DesktopLocaleResolve, UsesTheFirstSupportedPreferredLanguage) {
  EXPECT_EQ(DesktopLocale::resolve("system", {"it-IT", "fr-CA"}, "de"), "fr");
  EXPECT_EQ(DesktopLocale::resolve("system", {"", "-", "ja", "en"}, std::nullopt), "ja");
}

TEST(DesktopLocaleResolve, FallsBackToTheDetectedLanguage) {
  EXPECT_EQ(DesktopLocale::resolve("system", {}, "es-MX"), "es");
  EXPECT_EQ(DesktopLocale::resolve("system", {"zh-Hans"}, "pt-PT"), "pt-BR");
}

TEST(DesktopLocaleResolve, FallsBackToTheSourceLanguage) {
  EXPECT_EQ(DesktopLocale::resolve("system", {}, std::nullopt), "ru");
  EXPECT_EQ(DesktopLocale::resolve("system", {"zz"}, "xx"), "ru");
  EXPECT_EQ(DesktopLocale::resolve("system", {}, ""), "ru");
}

class DesktopLocaleCurrentTest : public testing::Test {
 protected:
  LocaleScope locale_;
};

TEST_F(DesktopLocaleCurrentTest, StartsByFollowingTheSystem) {
  EXPECT_EQ(DesktopLocale::requested, "system");
  EXPECT_EQ(DesktopLocale::detected, std::nullopt);
  EXPECT_EQ(DesktopLocale::current(), "ru");
}

TEST_F(DesktopLocaleCurrentTest, ReadsThePreferredLanguagesAtEveryUse) {
  locale_.prefer({"en-US"});
  EXPECT_EQ(DesktopLocale::current(), "en");
  locale_.prefer({"ja-JP", "en-US"});
  EXPECT_EQ(DesktopLocale::current(), "ja");
}

TEST_F(DesktopLocaleCurrentTest, UsesWhatTheServiceReported) {
  DesktopLocale::detected = "fr";
  EXPECT_EQ(DesktopLocale::current(), "fr");
  locale_.prefer({"en-US"});
  EXPECT_EQ(DesktopLocale::current(), "en");
  DesktopLocale::requested = "de";
  EXPECT_EQ(DesktopLocale::current(), "de");
}

TEST_F(DesktopLocaleCurrentTest, NeedsNoSources) {
  DesktopLocale::configure({}, {});
  EXPECT_EQ(DesktopLocale::current(), "ru");
  DesktopLocale::requested = "en";
  EXPECT_EQ(L("Навора"), "Навора");
}

TEST(DesktopLocaleSelfTest, PrintsItsResult) {
  testing::internal::CaptureStdout();
  DesktopLocale::selfTest();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "PASS: native locale policy (3 checks)\n");
}

}  // namespace
}  // namespace navora
