#include <gtest/gtest.h>

#include "notifications/NotificationReplies.h"

namespace navora {
namespace {

// Values that replace a member by one of another type.
const std::vector<Json> wrongValues{
    nullptr, 7, true, "[]", Json::array({7}), Json::object({{"0", 1}})};

TEST(NotificationReplies, ReadsTheUsersId) {
  EXPECT_EQ(readUserId({{"user", {{"id", "u1"}}}}), "u1");
  for (const Json& reply : {Json::object(), Json{{"user", "u1"}}, Json{{"user", {{"id", 1}}}},
                            Json{{"user", Json::object()}}, Json::array(), Json{{"id", "u1"}}})
    EXPECT_EQ(readUserId(reply), std::nullopt) << reply;
}

Json settingsReply() {
  return {{"timeZone", "Europe/Berlin"},
          {"settings",
           {{"notifyPrefs", R"({"message": "off", "invite": "phone"})"}, {"quietHours", "off"}}}};
}

TEST(NotificationReplies, ReadsTheSettings) {
  const NotificationSettings expected{
      {{"message", "off"}, {"invite", "phone"}}, "off", "Europe/Berlin"};
  EXPECT_EQ(NotificationSettings::read(settingsReply()), expected);
}

TEST(NotificationReplies, ReadsSettingsAllOrNothing) {
  for (const char* member : {"notifyPrefs", "quietHours"}) {
    Json reply = settingsReply();
    reply["settings"].erase(member);
    EXPECT_FALSE(NotificationSettings::read(reply)) << member;
    for (const Json& value : {Json(nullptr), Json(7), Json::object(), Json::array()}) {
      reply["settings"][member] = value;
      EXPECT_FALSE(NotificationSettings::read(reply)) << member << value;
    }
  }
  for (const char* member : {"settings", "timeZone"}) {
    Json reply = settingsReply();
    reply.erase(member);
    EXPECT_FALSE(NotificationSettings::read(reply)) << member;
    reply[member] = 7;
    EXPECT_FALSE(NotificationSettings::read(reply)) << member;
  }
}

TEST(NotificationReplies, RequiresPreferencesToBeTexts) {
  for (const char* text : {"", "{", "[]", "null", "7", R"({"message": true})",
                           R"({"message": "phone", "invite": null})", "\"{}\""}) {
    Json reply = settingsReply();
    reply["settings"]["notifyPrefs"] = text;
    EXPECT_FALSE(NotificationSettings::read(reply)) << text;
  }
}

TEST(NotificationReplies, ReadsTheListWithItsKinds) {
  const auto list = NotificationList::read(
      {{"notifications", {{{"id", "b"}}, {{"id", "a"}}}},
       {"kinds", {{{"key", "message"}, {"default", "phone"}, {"title", "x"}}}}});
  ASSERT_TRUE(list);
  EXPECT_EQ(list->items, (std::vector<Json>{{{"id", "b"}}, {{"id", "a"}}}));
  EXPECT_EQ(list->defaults, (std::map<std::string, std::string>{{"message", "phone"}}));
  EXPECT_TRUE(NotificationList::read({{"notifications", Json::array()}, {"kinds", Json::array()}}));
}

TEST(NotificationReplies, UsesTheLastOfTwoEqualKinds) {
  const auto list = NotificationList::read({{"notifications", Json::array()},
                                            {"kinds",
                                             {{{"key", "a"}, {"default", "off"}},
                                              {{"key", "a"}, {"default", "phone"}},
                                              {{"key", "a"}, {"default", 7}},
                                              {{"key", 7}, {"default", "phone"}},
                                              {{"key", "b"}}}}});
  ASSERT_TRUE(list);
  EXPECT_EQ(list->defaults, (std::map<std::string, std::string>{{"a", "phone"}}));
}

TEST(NotificationReplies, ReadsListsAllOrNothing) {
  for (const char* member : {"notifications", "kinds"}) {
    Json reply{{"notifications", Json::array()}, {"kinds", Json::array()}};
    reply.erase(member);
    EXPECT_FALSE(NotificationList::read(reply)) << member;
    for (const Json& value : wrongValues) {
      reply[member] = value;
      EXPECT_FALSE(NotificationList::read(reply)) << member << value;
    }
    reply[member] = Json::array({Json::object(), 7});
    EXPECT_FALSE(NotificationList::read(reply)) << member;
  }
  for (const Json& value : wrongValues)
    EXPECT_FALSE(NotificationList::read(value)) << value;
}

}  // namespace
}  // namespace navora
