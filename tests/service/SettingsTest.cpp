#include "ServiceHarness.h"
#include "service/storage/SettingsRules.h"

namespace navora::service::tests {
namespace {

class Settings : public ServiceTest {
 protected:
  void SetUp() override {
    start();
    client->signIn();
  }

  Json stored() { return client->get("/api/settings").json()["settings"]; }
};

TEST_F(Settings, NewUserHasTheDefaults) {
  const Json reply = client->get("/api/settings").json();
  EXPECT_EQ(reply["timeZone"], "UTC");
  EXPECT_EQ(reply["settings"]["locale"], "system");
  EXPECT_EQ(reply["settings"]["quietHours"], "off");
  EXPECT_EQ(reply["settings"]["notifyPrefs"], "{}");
  EXPECT_TRUE(reply["settings"]["detectedLocale"].is_null());
}

TEST_F(Settings, ChangesAreStoredAndTheRestStays) {
  const HttpReply reply =
      client->sendJson("PUT", "/api/settings", {{"theme", "dark"}, {"quietHours", "22:00-07:00"}});
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(stored()["theme"], "dark");
  EXPECT_EQ(stored()["quietHours"], "22:00-07:00");
  EXPECT_EQ(stored()["locale"], "system");
}

TEST_F(Settings, OneWrongValueKeepsTheWholeChangeOut) {
  const HttpReply reply =
      client->sendJson("PUT", "/api/settings", {{"theme", "dark"}, {"locale", "pt-PT"}});
  EXPECT_EQ(reply.status, 422);
  EXPECT_EQ(reply.json()["error"]["field"], "locale");
  EXPECT_EQ(stored()["theme"], "system");
}

TEST_F(Settings, ChosenTimeZoneBeatsTheReportedOne) {
  client->sendJson("PUT", "/api/settings", {{"systemTimeZone", "Asia/Tokyo"}});
  EXPECT_EQ(client->get("/api/settings").json()["timeZone"], "Asia/Tokyo");
  client->sendJson("PUT", "/api/settings", {{"timeZone", "Europe/Lisbon"}});
  EXPECT_EQ(client->get("/api/settings").json()["timeZone"], "Europe/Lisbon");
  client->sendJson("PUT", "/api/settings", {{"timeZone", "system"}});
  EXPECT_EQ(client->get("/api/settings").json()["timeZone"], "Asia/Tokyo");
}

TEST_F(Settings, DetectedLocaleIsTheFirstSupportedOfTheRequest) {
  const auto detected = [&](const char* header) {
    return client->get("/api/settings", {{"Accept-Language", header}})
        .json()["settings"]["detectedLocale"];
  };
  EXPECT_EQ(detected("it, DE-at;q=0.9, en;q=0.8"), "de");
  EXPECT_EQ(detected("pt-PT"), "pt-BR");
  EXPECT_TRUE(detected("zh, it").is_null());
}

TEST_F(Settings, NotificationKindsHaveDefaults) {
  const Json reply = client->get("/api/notifications").json();
  EXPECT_EQ(reply["notifications"], Json::array());
  for (const Json& kind : reply["kinds"]) {
    EXPECT_TRUE(kind["key"].is_string() && kind["default"].is_string()) << kind;
  }
  EXPECT_FALSE(reply["kinds"].empty());
}

TEST(SettingsRulesTest, RefusesEveryValueThatNoPageSends) {
  const std::vector<Json> wrong{
      {{"locale", "xx"}},
      {{"locale", nullptr}},
      {{"theme", "blue"}},
      {{"timeZone", "Europe/Nowhere"}},
      {{"timeZone", "../etc/passwd"}},
      {{"timeZone", "Europe"}},
      {{"systemTimeZone", "system"}},
      {{"quietHours", "9:00-17:00"}},
      {{"quietHours", "24:00-07:00"}},
      {{"quietHours", "22:00-07:00 "}},
      {{"notifyPrefs", "{"}},
      {{"notifyPrefs", "[]"}},
      {{"notifyPrefs", R"({"unknown":"phone"})"}},
      {{"notifyPrefs", R"({"message":"mail"})"}},
      {{"notifyPrefs", Json::object()}},
      {{"provider", "other"}},
      {{"model", std::string(101, 'm')}},
      {{"admin", "true"}},
      Json::array(),
  };
  for (const Json& changes : wrong)
    EXPECT_TRUE(SettingsRules::problem(changes)) << changes;
}

TEST(SettingsRulesTest, AcceptsWhatThePageSends) {
  const std::vector<Json> right{
      Json::object(),
      {{"locale", "pt-BR"}},
      {{"timeZone", "America/Argentina/Buenos_Aires"}},
      {{"timeZone", "Etc/GMT+3"}},
      {{"quietHours", "00:00-23:59"}},
      {{"notifyPrefs", R"({"message":"off","invite":"phone","spend":"inbox"})"}},
      {{"provider", "openrouter"}, {"model", std::string(100, 'm')}},
  };
  for (const Json& changes : right)
    EXPECT_FALSE(SettingsRules::problem(changes)) << changes;
}

}  // namespace
}  // namespace navora::service::tests
