#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/TestUrl.h"
#include "notifications/NotificationSelection.h"

namespace navora {
namespace {

using testing::ElementsAre;

class NotificationSelectionTest : public testing::Test {
 protected:
  static Json item(const Json& id, const std::string& kind = "message") {
    return {{"id", id}, {"kind", kind}, {"read", false}, {"resolved", false}, {"text", "Hello"}};
  }

  std::optional<NotificationSelection> read(const Json& reply) const {
    return NotificationSelection::read(reply.dump(), settings, now, origin);
  }
  // Returns the items' ids in order, each after "+" if the item is to be shown, "-" otherwise.
  std::string selected(const std::vector<Json>& items) const {
    const auto selection = read({{"notifications", items}, {"kinds", kinds}});
    if (!selection) return "none";
    std::string result;
    for (const NotificationSelection::Item& each : selection->items)
      result += (each.content ? "+" : "-") + each.id;
    return result;
  }

  const Url origin = testUrl("https://navora.example/");
  // 22:13:20 UTC.
  Date now = dateFromSecondsSince1970(1'700'000'000);
  NotificationSettings settings{{{"invite", "inbox"}}, "off", "UTC"};
  Json kinds{{{"key", "message"}, {"default", "phone"}}, {{"key", "invite"}, {"default", "phone"}}};
};

TEST_F(NotificationSelectionTest, ListsTheOldestFirst) {
  EXPECT_EQ(selected({item("c"), item("b"), item("a")}), "+a+b+c");
  EXPECT_EQ(selected({}), "");
}

TEST_F(NotificationSelectionTest, KeepsTheTextsOfAnItem) {
  Json titled = item("a");
  titled["data"] = {{"pushTitle", "Ines"}, {"url", "/circles/9"}};
  const auto selection = read({{"notifications", {item("b"), titled}}, {"kinds", kinds}});
  ASSERT_TRUE(selection);
  ASSERT_EQ(selection->items.size(), 2u);
  EXPECT_EQ(selection->items[0].content,
            (NotificationContent{"Ines", "Hello", "https://navora.example/circles/9"}));
  EXPECT_EQ(selection->items[1].content,
            (NotificationContent{std::nullopt, "Hello", "https://navora.example/#today"}));
}

TEST_F(NotificationSelectionTest, MarksUnwantedItems) {
  Json read = item("r");
  read["read"] = true;
  EXPECT_EQ(selected({item("a"), item("b", "invite"), item("c", "unknown"), read}), "-r-c-b+a");
}

TEST_F(NotificationSelectionTest, MarksItemsThatLeadOutsideTheOrigin) {
  Json elsewhere = item("a");
  elsewhere["data"]["url"] = "https://remote.example/";
  EXPECT_EQ(selected({elsewhere}), "-a");
}

TEST_F(NotificationSelectionTest, MarksAllItemsInQuietHours) {
  settings.quietHours = "22:00-07:00";
  EXPECT_EQ(selected({item("b"), item("a")}), "-a-b");
  settings.timeZone = "Asia/Tokyo";  // 07:13 there
  EXPECT_EQ(selected({item("b"), item("a")}), "+a+b");
  now = now - std::chrono::minutes(20);
  EXPECT_EQ(selected({item("b"), item("a")}), "-a-b");
}

TEST_F(NotificationSelectionTest, DropsItemsWithoutATextId) {
  EXPECT_EQ(selected({item(7), item("a"), item(nullptr), {{"kind", "message"}}}), "+a");
}

TEST_F(NotificationSelectionTest, KeepsItemsWithEqualIdsApart) {
  EXPECT_EQ(selected({item("a", "unknown"), item("b"), item("a")}), "+a+b-a");
}

TEST_F(NotificationSelectionTest, CollectsTheIdsOfAllItems) {
  const auto selection = read(
      {{"notifications", {item("b"), item("a", "unknown"), item(7), item("b")}}, {"kinds", kinds}});
  ASSERT_TRUE(selection);
  EXPECT_THAT(selection->ids(), ElementsAre("a", "b"));
}

TEST_F(NotificationSelectionTest, ReadsBodiesAllOrNothing) {
  const std::string whole = R"({"notifications": [{"id": "a"}], "kinds": []})";
  ASSERT_TRUE(NotificationSelection::read(whole, settings, now, origin));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(NotificationSelection::read(whole.substr(0, length), settings, now, origin))
        << length;
  }
  for (const char* body :
       {"[]", "null", "{}", "<!doctype html>", R"({"notifications": [7], "kinds": []})",
        R"({"notifications": [{"id": "a"}, "b"], "kinds": []})", R"({"notifications": []})",
        R"({"notifications": {}, "kinds": []})", R"({"notifications": [], "kinds": [7]})",
        "{\"notifications\": [{\"id\": \"\xff\"}], \"kinds\": []}"})
    EXPECT_FALSE(NotificationSelection::read(body, settings, now, origin)) << body;
  const std::string deep = R"({"notifications": [{"id": "a", "data": )" + std::string(600, '[') +
                           std::string(600, ']') + R"(}], "kinds": []})";
  EXPECT_FALSE(NotificationSelection::read(deep, settings, now, origin));
}

}  // namespace
}  // namespace navora
