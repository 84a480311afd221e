#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"
#include "notifications/NotificationItems.h"

namespace navora {
namespace {

const Url origin = testUrl("https://navora.example/");

// Returns the destination's address relative to the origin, or the whole address outside it.
std::string destination(const Json& item) {
  const auto url = notificationDestination(item, origin);
  if (!url) return "none";
  const std::string text = url->string();
  constexpr std::string_view prefix = "https://navora.example";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

TEST(NotificationDestination, AppliesTheFirstMatchingRule) {
  Json item{{"kind", "signup"},
            {"circleId", "c"},
            {"roomId", "r"},
            {"captureId", "n"},
            {"data", {{"url", "/circles/9"}}}};
  EXPECT_EQ(destination(item), "/circles/9");
  item["data"].erase("url");
  EXPECT_EQ(destination(item), "/#today?open=n");
  item.erase("captureId");
  EXPECT_EQ(destination(item), "/#circles?room=r");
  item.erase("roomId");
  EXPECT_EQ(destination(item), "/#circles");
  item.erase("circleId");
  EXPECT_EQ(destination(item), "/#admin");
}

TEST(NotificationDestination, MapsKindsToPages) {
  for (const char* kind : {"invite", "event_added", "event_changed"})
    EXPECT_EQ(destination({{"kind", kind}}), "/#calendar") << kind;
  for (const char* kind : {"spend", "calendar_error"})
    EXPECT_EQ(destination({{"kind", kind}}), "/#settings") << kind;
  EXPECT_EQ(destination({{"kind", "else"}}), "/#today");
  EXPECT_EQ(destination({{"kind", 7}}), "/#today");
  EXPECT_EQ(destination(Json::object()), "/#today");
}

TEST(NotificationDestination, AddsTheEventOnlyWithADate) {
  const Json dated{
      {"kind", "event_changed"}, {"data", {{"date", "2025-01-02"}}}, {"eventUid", "a/b"}};
  EXPECT_EQ(destination(dated), "/#calendar?date=2025%2D01%2D02&event=a%2Fb");
  EXPECT_EQ(destination({{"kind", "invite"}, {"data", {{"date", "2025-01-02"}}}}),
            "/#calendar?date=2025%2D01%2D02");
  EXPECT_EQ(destination({{"kind", "invite"}, {"eventUid", "a"}}), "/#calendar");
  EXPECT_EQ(destination({{"kind", "invite"}, {"data", {{"date", 20250102}}}, {"eventUid", "a"}}),
            "/#calendar");
}

TEST(NotificationDestination, EncodesEverythingButLettersAndDigits) {
  EXPECT_EQ(destination({{"captureId", "a b&c=d#e/f?g-h_i.j~k%l\"m"}}),
            "/#today?open=a%20b%26c%3Dd%23e%2Ff%3Fg%2Dh%5Fi%2Ej%7Ek%25l%22m");
  EXPECT_EQ(destination({{"roomId", "é\n"}}), "/#circles?room=%C3%A9%0A");
  EXPECT_EQ(destination({{"roomId", ""}}), "/#circles?room=");
}

TEST(NotificationDestination, IgnoresMembersOfOtherTypes) {
  EXPECT_EQ(destination({{"captureId", 7}, {"roomId", nullptr}, {"circleId", "c"}}), "/#circles");
  EXPECT_EQ(destination({{"data", "https://remote.example"}, {"roomId", "r"}}), "/#circles?room=r");
  EXPECT_EQ(destination({{"data", {{"url", 7}}}, {"circleId", "c"}}), "/#circles");
}

TEST(NotificationDestination, StaysWithinTheOrigin) {
  EXPECT_EQ(destination({{"data", {{"url", "https://navora.example/a#b"}}}}), "/a#b");
  for (const char* url :
       {"https://remote.example/", "//remote.example/", "http://navora.example/",
        "https://navora.example:444/", "https://user@navora.example/", "javascript:alert(1)",
        "data:text/html,x", "file:///etc/passwd", "https://navora.example.remote.example/", ""})
    EXPECT_EQ(destination({{"data", {{"url", url}}}, {"roomId", "r"}}), "none") << url;
}

class UserNotificationTest : public testing::Test {
 protected:
  static UserNotification made(const Json& item) {
    return userNotification("7", notificationContent(item, origin));
  }

  LocaleScope locale;
};

TEST_F(UserNotificationTest, ContainsTheIdAndTheDestination) {
  const auto content = notificationContent({}, testUrl("https://navora.example/#today"));
  const auto notification = userNotification("a b", content);
  EXPECT_EQ(notification.identifier, "navora-a b");
  EXPECT_TRUE(notification.once);
  EXPECT_EQ(notification.url, "https://navora.example/#today");
  EXPECT_TRUE(notification.defaultSound);
}

TEST_F(UserNotificationTest, IsTitledByTheItemOrTheProduct) {
  EXPECT_EQ(made({{"data", {{"pushTitle", "Ines"}}}}).title, "Ines");
  EXPECT_EQ(made({{"data", {{"pushTitle", ""}}}}).title, "");
  locale.setCatalogs(R"({"en": {"Навора": "Navora"}})");
  DesktopLocale::requested = "en";
  EXPECT_EQ(made({{"data", {{"pushTitle", 7}}}}).title, "Navora");
  EXPECT_EQ(made({{"pushTitle", "x"}}).title, "Navora");
}

TEST_F(UserNotificationTest, JoinsLeadAndText) {
  EXPECT_EQ(made({{"lead", "Ines:"}, {"text", "Hello"}}).body, "Ines: Hello");
  EXPECT_EQ(made({{"lead", "Ines:"}}).body, "Ines:");
  EXPECT_EQ(made({{"text", "Hello"}}).body, "Hello");
  EXPECT_EQ(made({{"lead", 7}, {"text", nullptr}}).body, "");
  EXPECT_EQ(made({{"lead", ""}, {"text", "Hello"}}).body, " Hello");
}

TEST_F(UserNotificationTest, PassesTextOnUnchanged) {
  const std::string hostile = "<b>bold</b>\x01\x7F\n&amp;" + std::string(100'000, 'x');
  EXPECT_EQ(made({{"text", hostile}}).body, hostile);
}

TEST_F(UserNotificationTest, UsesOneIdentifierForTests) {
  const auto notification = testNotification(origin);
  EXPECT_EQ(notification.identifier, "navora-test");
  EXPECT_EQ(notification.title, "Навора");
  EXPECT_EQ(notification.body, "Уведомления включены на этом устройстве");
  EXPECT_EQ(notification.url, "https://navora.example/#today");
}

}  // namespace
}  // namespace navora
