#include <string>

#include <gmock/gmock.h>

#include "hosts/linux/installation/Appcast.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string anySignature = std::string(86, 'A') + "==";

std::string feedOf(const std::string& items, const std::string& prefix = "sparkle") {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<rss version=\"2.0\" xmlns:" + prefix +
         "=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><title>Navora</title>" +
         items + "</channel></rss>";
}

std::string enclosure(const std::string& attributes = "", const std::string& url = "navora.tar.zst",
                      const std::string& length = "1000") {
  return "<enclosure url=\"" + url + "\" length=\"" + length + "\" sparkle:os=\"linux\" " +
         "sparkle:edSignature=\"" + anySignature + "\" " + attributes + "/>";
}

std::string itemText(const std::string& version, const std::string& more = "") {
  return "<item><sparkle:version>" + version + "</sparkle:version>" + more + enclosure() +
         "</item>";
}

const Url& feedAddress() {
  static const Url address = *Url::parse("https://updates.example/navora/appcast.xml");
  return address;
}

std::vector<AppcastEntry> entriesOf(const std::string& feed) {
  auto entries = readAppcast(feed, feedAddress());
  EXPECT_TRUE(entries) << entries.error();
  return entries ? *std::move(entries) : std::vector<AppcastEntry>();
}

std::vector<std::string> versionsIn(const std::string& items) {
  std::vector<std::string> versions;
  for (const auto& entry : entriesOf(feedOf(items)))
    versions.push_back(entry.version);
  return versions;
}

// Returns the entry of a feed with one item.
AppcastEntry entryFrom(const std::string& item) {
  const auto entries = entriesOf(feedOf(item));
  EXPECT_EQ(entries.size(), 1U) << item;
  return entries.empty() ? AppcastEntry() : entries.front();
}

std::string reasonFor(const std::string& feed) {
  const auto entries = readAppcast(feed, feedAddress());
  return entries ? "read" : entries.error();
}

TEST(AppcastTest, AnItemIsReadCompletely) {
  const auto entry = entryFrom(
      "<item><title>Any</title><link>notes/2.html</link>"
      "<pubDate>Sun, 09 Sep 2001 01:46:40 +0000</pubDate><sparkle:version>2.0</sparkle:version>"
      "<sparkle:shortVersionString>2 (Spring)</sparkle:shortVersionString>"
      "<sparkle:minimumSystemVersion>2.36</sparkle:minimumSystemVersion>"
      "<sparkle:channel>beta</sparkle:channel><sparkle:criticalUpdate/>"
      "<sparkle:phasedRolloutInterval>86400</sparkle:phasedRolloutInterval>" +
      enclosure() + "</item>");
  EXPECT_EQ(entry.version, "2.0");
  EXPECT_EQ(entry.displayVersion, "2 (Spring)");
  EXPECT_EQ(entry.link, Url::parse("https://updates.example/navora/notes/2.html"));
  EXPECT_EQ(entry.minimumSystemVersion, "2.36");
  EXPECT_EQ(entry.channel, "beta");
  EXPECT_TRUE(entry.isCritical);
  EXPECT_EQ(entry.published, dateFromSecondsSince1970(1'000'000'000));
  EXPECT_EQ(entry.phasedRolloutInterval, std::chrono::seconds(86'400));
  EXPECT_FALSE(entry.informational.forAll);
  ASSERT_TRUE(entry.archive);
  EXPECT_EQ(entry.archive->url.string(), "https://updates.example/navora/navora.tar.zst");
  EXPECT_EQ(entry.archive->length, 1000U);
  EXPECT_EQ(entry.archive->signature, readSignature(anySignature));
}

TEST(AppcastTest, MissingElementsAreAbsent) {
  const auto entry = entryFrom(itemText("2.0"));
  EXPECT_EQ(entry.displayVersion, "2.0");
  EXPECT_EQ(entry.link, std::nullopt);
  EXPECT_EQ(entry.minimumSystemVersion, "");
  EXPECT_EQ(entry.channel, "");
  EXPECT_FALSE(entry.isCritical);
  EXPECT_EQ(entry.published, std::nullopt);
  EXPECT_EQ(entry.phasedRolloutInterval, std::nullopt);
  EXPECT_FALSE(entry.informational.forAll);
}

TEST(AppcastTest, SpaceAroundTextsIsIgnored) {
  const auto entry = entryFrom(
      "<item><sparkle:version>\n  2.0\t</sparkle:version><sparkle:channel> </sparkle:channel>" +
      enclosure() + "</item>");
  EXPECT_EQ(entry.version, "2.0");
  EXPECT_EQ(entry.channel, "");
}

TEST(AppcastTest, TheEnclosuresVersionsTakePrecedence) {
  const auto entry = entryFrom(
      "<item><sparkle:version>2.0</sparkle:version>"
      "<sparkle:shortVersionString>two</sparkle:shortVersionString>" +
      enclosure("sparkle:version=\"3.0\" sparkle:shortVersionString=\"three\"") + "</item>");
  EXPECT_EQ(entry.version, "3.0");
  EXPECT_EQ(entry.displayVersion, "three");
}

TEST(AppcastTest, ItemsForOtherSystemsAreSkipped) {
  EXPECT_THAT(
      versionsIn("<item><sparkle:version>2.0</sparkle:version><link>https://a.example/</link>"
                 "<enclosure url=\"a\" length=\"1\" sparkle:edSignature=\"" +
                 anySignature +
                 "\"/></item>"
                 "<item><sparkle:version>2.1</sparkle:version>"
                 "<enclosure url=\"a\" length=\"1\" sparkle:os=\"macos\" "
                 "sparkle:edSignature=\"" +
                 anySignature + "\"/></item>" + itemText("2.2")),
      ElementsAre("2.2"));
}

TEST(AppcastTest, TheEnclosureForLinuxIsUsed) {
  const auto entry = entryFrom(
      "<item><sparkle:version>2.0</sparkle:version>"
      "<enclosure url=\"mac.zip\" length=\"1\" sparkle:os=\"macos\"/>"
      "<enclosure url=\"windows.exe\" length=\"1\" sparkle:os=\"windows\"/>" +
      enclosure("", "linux.tar.zst") + "</item>");
  ASSERT_TRUE(entry.archive);
  EXPECT_EQ(entry.archive->url.string(), "https://updates.example/navora/linux.tar.zst");
}

TEST(AppcastTest, AnItemWithOnlyALinkIsInformational) {
  const std::string head = "<item><sparkle:version>2.0</sparkle:version>";
  const auto entry =
      entryFrom(head + "<sparkle:os>linux</sparkle:os><link>https://a.example/</link></item>");
  EXPECT_FALSE(entry.archive);
  EXPECT_TRUE(entry.informational.forAll);
  EXPECT_EQ(entry.link, Url::parse("https://a.example/"));
  EXPECT_THAT(versionsIn(head + "<sparkle:os>linux</sparkle:os></item>"), IsEmpty());
  EXPECT_THAT(versionsIn(head + "<link>https://a.example/</link></item>"), IsEmpty());
  EXPECT_THAT(
      versionsIn(head + "<sparkle:os>macos</sparkle:os><link>https://a.example/</link></item>"),
      IsEmpty());
}

TEST(AppcastTest, AddressesAreRelativeToTheFeed) {
  const auto urlOf = [](const std::string& url) {
    const auto entry =
        entryFrom("<item><sparkle:version>2.0</sparkle:version>" + enclosure("", url) + "</item>");
    return entry.archive ? entry.archive->url.string() : "none";
  };
  EXPECT_EQ(urlOf("a.tar"), "https://updates.example/navora/a.tar");
  EXPECT_EQ(urlOf("/a.tar"), "https://updates.example/a.tar");
  EXPECT_EQ(urlOf("../../../a.tar"), "https://updates.example/a.tar");
  EXPECT_EQ(urlOf("//other.example/a.tar"), "https://other.example/a.tar");
  EXPECT_EQ(urlOf("https://other.example/a.tar?b=1&amp;c=2"),
            "https://other.example/a.tar?b=1&c=2");
}

TEST(AppcastTest, TheVersionsOfAnInformationalUpdateAreRead) {
  const auto rule = [](const std::string& content) {
    return entryFrom(itemText("2.0", "<sparkle:informationalUpdate>" + content +
                                         "</sparkle:informationalUpdate>"))
        .informational;
  };
  EXPECT_TRUE(rule("").forAll);
  const auto some = rule(
      "<sparkle:version>1.2</sparkle:version><sparkle:version>1.3</sparkle:version>"
      "<sparkle:belowVersion> 1.1 </sparkle:belowVersion>");
  EXPECT_FALSE(some.forAll);
  EXPECT_THAT(some.versions, ElementsAre("1.2", "1.3"));
  EXPECT_THAT(some.belowVersions, ElementsAre("1.1"));
}

TEST(AppcastTest, AnyNamespacePrefixIsAccepted) {
  const auto entries = entriesOf(
      feedOf("<item><s:version>2.0</s:version><enclosure url=\"a\" length=\"1\" s:os=\"linux\" "
             "s:edSignature=\"" +
                 anySignature + "\"/></item>",
             "s"));
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries.front().version, "2.0");
  // The usual prefix has no meaning if another was declared.
  EXPECT_THAT(entriesOf(feedOf(itemText("2.0"), "s")), IsEmpty());
}

TEST(AppcastTest, WithoutTheNamespaceThereAreNoReleases) {
  EXPECT_THAT(entriesOf("<rss><channel>" + itemText("2.0") + "</channel></rss>"), IsEmpty());
  EXPECT_THAT(entriesOf("<rss xmlns:sparkle=\"http://a.example/\"><channel>" + itemText("2.0") +
                        "</channel></rss>"),
              IsEmpty());
}

TEST(AppcastTest, AnEmptyFeedIsValid) {
  EXPECT_THAT(entriesOf(feedOf("")), IsEmpty());
}

TEST(AppcastTest, AnInvalidFeedGivesAReason) {
  for (const auto& text :
       {std::string(), std::string("hello"), std::string("<rss>"), std::string("<html></html>"),
        std::string("{\"a\": 1}"), std::string("\0\0\0\0", 4), std::string("\xFF\xFE<\0r\0", 6),
        std::string("<rss><channel></rss>"), feedOf("<item>"), feedOf("</item>")}) {
    EXPECT_NE(reasonFor(text), "read") << text;
  }
}

TEST(AppcastTest, ADocumentTypeIsRefused) {
  const std::string feed = feedOf(itemText("2.0"));
  const std::string body = feed.substr(feed.find("<rss"));
  for (const char* type : {"<!DOCTYPE rss>", "<!DOCTYPE rss SYSTEM \"file:///etc/passwd\">",
                           "<!DOCTYPE rss [<!ENTITY a \"2.0\">]>",
                           "<!DOCTYPE rss [<!ENTITY % a SYSTEM \"http://a.example/\"> %a;]>"}) {
    EXPECT_THAT(reasonFor(type + body), HasSubstr("document type")) << type;
    EXPECT_THAT(reasonFor("<!-- a -->" + std::string(type) + body), HasSubstr("document type"));
    EXPECT_NE(reasonFor(body + type), "read") << type;
    EXPECT_NE(reasonFor(feedOf(type + itemText("2.0"))), "read") << type;
  }
}

TEST(AppcastTest, EntityExpansionIsHarmless) {
  std::string types = "<!DOCTYPE rss [<!ENTITY a0 \"aaaaaaaaaa\">";
  for (int level = 1; level < 40; ++level) {
    const std::string below = "&a" + std::to_string(level - 1) + ";";
    types += "<!ENTITY a" + std::to_string(level) + " \"" + below + below + below + below + "\">";
  }
  EXPECT_THAT(reasonFor(types + "]><rss><channel><title>&a39;</title></channel></rss>"),
              HasSubstr("document type"));
}

TEST(AppcastTest, AnUndeclaredEntityIsNotAVersion) {
  EXPECT_THAT(versionsIn(itemText("&version;") + itemText("2.&#48;")), ElementsAre("2.0"));
}

TEST(AppcastTest, AnInvalidItemIsSkipped) {
  const std::string before = itemText("2.0");
  const std::string after = itemText("2.1");
  const auto bad = [](const std::string& content) { return "<item>" + content + "</item>"; };
  const std::string version = "<sparkle:version>3.0</sparkle:version>";
  const std::string noSignature = "<enclosure url=\"a\" length=\"1\" sparkle:os=\"linux\"/>";
  const std::string noUrl =
      "<enclosure length=\"1\" sparkle:os=\"linux\" sparkle:edSignature=\"" + anySignature + "\"/>";
  for (const std::string& item :
       {std::string("<item/>"), bad(enclosure()), bad(version), bad(version + noSignature),
        bad(version + noUrl), bad(version + enclosure("", "")),
        bad(version + enclosure("", "http://[broken/a")), bad(version + enclosure("", "a", "")),
        bad(version + enclosure("", "a", "0")), bad(version + enclosure("", "a", "-1")),
        bad(version + enclosure("", "a", "1e3")), bad(version + enclosure("", "a", "1 000")),
        bad(version + enclosure("", "a", "99999999999999999999")),
        bad(version + "<link>http://[broken/</link>" + enclosure()),
        bad(version + "<pubDate>yesterday</pubDate>" + enclosure()),
        bad(version + "<pubDate>Mon, 99 Foo 2026 25:61:61 GMT</pubDate>" + enclosure()),
        bad(version + "<sparkle:phasedRolloutInterval>soon</sparkle:phasedRolloutInterval>" +
            enclosure()),
        bad(version + "<sparkle:phasedRolloutInterval>-1</sparkle:phasedRolloutInterval>" +
            enclosure()),
        bad(version + "<sparkle:phasedRolloutInterval>9999999999</sparkle:phasedRolloutInterval>" +
            enclosure())}) {
    EXPECT_THAT(versionsIn(before + item + after), ElementsAre("2.0", "2.1")) << item;
  }
}

TEST(AppcastTest, AMalformedSignatureIsRefused) {
  const auto with = [](const std::string& text) {
    return versionsIn(
        "<item><sparkle:version>2.0</sparkle:version><enclosure url=\"a\" "
        "length=\"1\" sparkle:os=\"linux\" sparkle:edSignature=\"" +
        text + "\"/></item>");
  };
  EXPECT_THAT(with(anySignature), ElementsAre("2.0"));
  for (const std::string& text :
       {std::string(), std::string(86, 'A'), std::string(84, 'A') + "====", anySignature + "A",
        std::string(90, 'A') + "==", std::string(85, 'A') + "===", std::string(85, '-') + "A==",
        std::string(85, 'A') + "B==", std::string(10'000, 'A')}) {
    EXPECT_THAT(with(text), IsEmpty()) << text;
  }
}

TEST(AppcastTest, AVersionIsShortAndHasNoUnexpectedCharacters) {
  EXPECT_THAT(versionsIn(itemText("1.0-rc_1+5 (7)")), ElementsAre("1.0-rc_1+5 (7)"));
  EXPECT_THAT(versionsIn(itemText(std::string(100, '1'))), testing::SizeIs(1));
  for (const std::string& version :
       {std::string(), std::string(101, '1'), std::string("1/2"), std::string("../1"),
        std::string("1&lt;2"), std::string("1&#10;2"), std::string("1\xC3\xA9"),
        std::string("1\xFF"), std::string("%s"), std::string("1\"2")}) {
    EXPECT_THAT(versionsIn(itemText(version)), IsEmpty()) << version;
    EXPECT_THAT(versionsIn(itemText("2.0", "<sparkle:shortVersionString>" + version +
                                               "</sparkle:shortVersionString>")),
                version.empty() ? testing::SizeIs(1) : testing::SizeIs(0))
        << version;
  }
}

TEST(AppcastTest, DatesMayHaveAnyTimeZone) {
  const auto dateOf = [](const std::string& text) {
    return entryFrom(itemText("2.0", "<pubDate>" + text + "</pubDate>")).published;
  };
  const Date expected = dateFromSecondsSince1970(1'000'000'000);
  EXPECT_EQ(dateOf("Sun, 09 Sep 2001 01:46:40 GMT"), expected);
  EXPECT_EQ(dateOf("Sun, 09 Sep 2001 04:46:40 +0300"), expected);
  EXPECT_EQ(dateOf("Sat, 08 Sep 2001 18:46:40 -0700"), expected);
}

TEST(AppcastTest, AHugeFeedIsRead) {
  std::string items;
  for (int index = 0; index < 20'000; ++index)
    items += "<item><description>text</description></item>";
  EXPECT_THAT(versionsIn(items + itemText("2.0")), ElementsAre("2.0"));
  EXPECT_THAT(versionsIn("<description>" + std::string(8'000'000, 'x') + "</description>" +
                         itemText("2.0")),
              ElementsAre("2.0"));
}

TEST(AppcastTest, DeepNestingIsHarmless) {
  constexpr int depth = 500'000;
  std::string open;
  std::string close;
  for (int level = 0; level < depth; ++level) {
    open += "<a>";
    close += "</a>";
  }
  EXPECT_THAT(versionsIn(itemText("2.0") + open + close), ElementsAre("2.0"));
  EXPECT_NE(reasonFor(feedOf(open)), "read");
}

}  // namespace
}  // namespace navora
