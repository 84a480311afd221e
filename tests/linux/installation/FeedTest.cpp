#include <gmock/gmock.h>

#include "hosts/linux/installation/Appcast.h"
#include "make-update/Feed.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const Url address = *Url::parse("https://updates.example/appcast.xml");

FeedItem itemOf(const std::string& version) {
  return {.version = version,
          .link = "https://navora.example/" + version,
          .published = "Sun, 09 Sep 2001 01:46:40 +0000",
          .minimumSystemVersion = "2.36",
          .channel = "beta",
          .phasedRolloutInterval = std::chrono::hours(24),
          .isCritical = true,
          .isInformational = false,
          .archiveUrl = "https://updates.example/a?b=1&c=<2>",
          .archiveLength = 1000,
          .archiveSignature = std::string(86, 'A') + "=="};
}

std::string feedWith(const std::vector<std::string>& versions) {
  std::string feed;
  for (const auto& version : versions)
    feed = addToFeed(feed, itemOf(version)).value_or("none");
  return feed;
}

std::string feedAround(const std::string& items, const std::string& prefix = "sparkle") {
  return "<rss xmlns:" + prefix +
         "=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" + items +
         "</channel></rss>";
}

std::vector<std::string> versionsOf(const std::string& feed) {
  std::vector<std::string> versions;
  const auto entries = readAppcast(feed, address);
  if (!entries) return {entries.error()};
  for (const auto& entry : *entries)
    versions.push_back(entry.version);
  return versions;
}

TEST(FeedTest, WritesWhatIsRead) {
  const auto entries = readAppcast(feedWith({"2.0"}), address);
  ASSERT_TRUE(entries && entries->size() == 1);
  const AppcastEntry& entry = entries->front();
  EXPECT_EQ(entry.version, "2.0");
  EXPECT_EQ(entry.displayVersion, "2.0");
  EXPECT_EQ(entry.link, Url::parse("https://navora.example/2.0"));
  EXPECT_EQ(entry.published, dateFromSecondsSince1970(1'000'000'000));
  EXPECT_EQ(entry.minimumSystemVersion, "2.36");
  EXPECT_EQ(entry.channel, "beta");
  EXPECT_EQ(entry.phasedRolloutInterval, std::chrono::hours(24));
  EXPECT_TRUE(entry.isCritical);
  EXPECT_FALSE(entry.informational.forAll);
  ASSERT_TRUE(entry.archive);
  EXPECT_EQ(entry.archive->url, Url::parse("https://updates.example/a?b=1&c=<2>"));
  EXPECT_EQ(entry.archive->length, 1000U);
}

TEST(FeedTest, EmptyTextsAreNotWritten) {
  FeedItem item;
  item.version = "2.0";
  item.archiveUrl = "a";
  item.archiveLength = 1;
  item.archiveSignature = itemOf("2.0").archiveSignature;
  const auto feed = addToFeed("", item);
  ASSERT_TRUE(feed);
  for (const char* name : {"channel>beta", "link", "pubDate", "minimumSystem", "phased", "critical",
                           "informational"}) {
    EXPECT_THAT(*feed, Not(HasSubstr(name))) << name;
  }
  EXPECT_THAT(versionsOf(*feed), ElementsAre("2.0"));
}

TEST(FeedTest, AnInformationalReleaseIsInformationalForAll) {
  auto item = itemOf("2.0");
  item.isInformational = true;
  const auto entries = readAppcast(addToFeed("", item).value_or(""), address);
  ASSERT_TRUE(entries && entries->size() == 1);
  EXPECT_TRUE(entries->front().informational.forAll);
}

TEST(FeedTest, TheSameReleasesGiveTheSameBytes) {
  EXPECT_EQ(feedWith({"1.0", "2.0"}), feedWith({"1.0", "2.0"}));
}

TEST(FeedTest, ANewReleaseComesFirst) {
  EXPECT_THAT(versionsOf(feedWith({"1.0", "2.0", "1.5"})), ElementsAre("1.5", "2.0", "1.0"));
}

TEST(FeedTest, AReleaseReplacesOneOfTheSameVersion) {
  EXPECT_THAT(versionsOf(feedWith({"1.0", "2.0", "1.0"})), ElementsAre("1.0", "2.0"));
  EXPECT_EQ(feedWith({"2.0", "1.0"}), feedWith({"1.0", "2.0", "1.0"}));
}

TEST(FeedTest, HandWrittenItemsOfTheSameVersionAreReplaced) {
  const std::string feed = feedAround(
      "<item><sparkle:version> 2.0\n</sparkle:version><enclosure url=\"old1\" "
      "sparkle:os=\"linux\"/>"
      "</item><item><sparkle:version>1</sparkle:version><enclosure url=\"old2\" "
      "sparkle:version=\"2.0\" sparkle:os=\"linux\"/></item><item><link>https://old3.example/"
      "</link><sparkle:version>2.0</sparkle:version><sparkle:os>linux</sparkle:os></item>");
  const auto next = addToFeed(feed, itemOf("2.0"));
  ASSERT_TRUE(next);
  EXPECT_THAT(*next, Not(HasSubstr("old")));
}

TEST(FeedTest, ItemsForOtherSystemsAndOtherElementsAreKept) {
  const std::string feed = feedAround(
      "<title>Other title</title><description><![CDATA[<b>text</b>]]></description>"
      "<item><sparkle:version>2.0</sparkle:version><enclosure url=\"mac.zip\"/></item>"
      "<item><sparkle:version>2.0</sparkle:version><enclosure url=\"windows.exe\" "
      "sparkle:os=\"windows\"/><enclosure url=\"old.tar\" sparkle:os=\"linux\"/></item>"
      "<item><sparkle:version>2.0</sparkle:version><link>https://news.example/</link></item>");
  const auto next = addToFeed(feed, itemOf("2.0"));
  ASSERT_TRUE(next);
  for (const char* part : {"mac.zip", "windows.exe", "https://news.example/", "Other title",
                           "<![CDATA[<b>text</b>]]>"}) {
    EXPECT_THAT(*next, HasSubstr(part));
  }
  EXPECT_THAT(*next, Not(HasSubstr("old.tar")));
  EXPECT_THAT(versionsOf(*next), ElementsAre("2.0"));
}

TEST(FeedTest, TheSignatureOfTheFeedIsRemoved) {
  const auto next =
      addToFeed(feedWith({"1.0"}) + "<!-- sparkle-signatures:\nlength: 1\n-->", itemOf("2.0"));
  ASSERT_TRUE(next);
  EXPECT_THAT(*next, Not(HasSubstr("sparkle-signatures")));
}

TEST(FeedTest, AnotherDocumentIsRefused) {
  for (const std::string& text :
       {std::string("x"), std::string("<html/>"), std::string("<rss/>"), std::string("<rss>"),
        std::string("<rss><channel/></rss>"), feedAround("", "other")}) {
    EXPECT_EQ(addToFeed(text, itemOf("2.0")), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace navora
