#include <gtest/gtest.h>

#include "app/PageMessages.h"

namespace navora {
namespace {

struct ValidBody {
  std::string json;
  LocaleMessage message;
};

class ValidLocaleMessageTest : public testing::TestWithParam<ValidBody> {};

TEST_P(ValidLocaleMessageTest, IsAccepted) {
  EXPECT_EQ(LocaleMessage::read(Json::parse(GetParam().json)), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, ValidLocaleMessageTest,
    testing::Values(ValidBody{R"({"requestedLocale": "system"})", {"system", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "ru"})", {"ru", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "en"})", {"en", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "es"})", {"es", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "pt-BR"})", {"pt-BR", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "de"})", {"de", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "fr"})", {"fr", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "ja"})", {"ja", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "pt-BR", "detectedLocale": null})",
                              {"pt-BR", std::nullopt}},
                    ValidBody{R"({"requestedLocale": "system", "detectedLocale": "pt-BR"})",
                              {"system", "pt-BR"}},
                    ValidBody{R"({"requestedLocale": "en", "detectedLocale": "ja", "other": [1]})",
                              {"en", "ja"}}));

class InvalidLocaleMessageTest : public testing::TestWithParam<std::string> {};

TEST_P(InvalidLocaleMessageTest, IsRejectedAsAWhole) {
  EXPECT_EQ(LocaleMessage::read(Json::parse(GetParam())), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(NotAnObject, InvalidLocaleMessageTest,
                         testing::Values("null", "true", "1", R"("en")", R"(["requestedLocale"])",
                                         R"([{"requestedLocale": "en"}])"));

INSTANTIATE_TEST_SUITE_P(
    RequestedLocale, InvalidLocaleMessageTest,
    testing::Values("{}", R"({"detectedLocale": "en"})", R"({"requestedLocale": null})",
                    R"({"requestedLocale": 7})", R"({"requestedLocale": ["en"]})",
                    R"({"requestedLocale": ""})", R"({"requestedLocale": "pt-PT"})",
                    R"({"requestedLocale": "pt"})", R"({"requestedLocale": "pt-br"})",
                    R"({"requestedLocale": "EN"})", R"({"requestedLocale": "en-US"})",
                    R"({"requestedLocale": "System"})", R"({"requestedLocale": " en"})",
                    R"({"requestedLocale": "en\u0000"})", R"({"RequestedLocale": "en"})"));

INSTANTIATE_TEST_SUITE_P(DetectedLocale, InvalidLocaleMessageTest,
                         testing::Values(R"({"requestedLocale": "en", "detectedLocale": "xx"})",
                                         R"({"requestedLocale": "en", "detectedLocale": "system"})",
                                         R"({"requestedLocale": "en", "detectedLocale": ""})",
                                         R"({"requestedLocale": "en", "detectedLocale": "pt-PT"})",
                                         R"({"requestedLocale": "en", "detectedLocale": 1})",
                                         R"({"requestedLocale": "en", "detectedLocale": false})",
                                         R"({"requestedLocale": "en", "detectedLocale": {}})"));

}  // namespace
}  // namespace navora
