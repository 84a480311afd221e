#include <gmock/gmock.h>

#include "app/DesktopTimeZone.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t maximumBytes = 1024 * 1024;

// Whether a message was accepted shows in the time zone being published.
class NavoraAppDelegateMessagesTest : public AppDelegateTest {
 protected:
  void SetUp() override { launchShowing(testUrl("https://navora.example/")); }

  bool accepts(const std::string& body,
               const FrameInfo& frame = mainFrame("https://navora.example/")) {
    log().take();
    webView().post("navoraTimeZoneDetection", body, frame);
    return !log().take().empty();
  }

  // A JSON string that is `size` bytes long with its quotes.
  static std::string bodyOfSize(std::size_t size) { return '"' + std::string(size - 2, 'a') + '"'; }
};

TEST_F(NavoraAppDelegateMessagesTest, AcceptsTheMainFrameOfAPageOfTheOrigin) {
  EXPECT_TRUE(accepts("{}", mainFrame("https://navora.example/")));
  EXPECT_TRUE(accepts("{}", mainFrame("https://navora.example:443/settings#locale")));
}

TEST_F(NavoraAppDelegateMessagesTest, DropsASubframeEvenOfTheOrigin) {
  EXPECT_FALSE(accepts("{}", subframe("https://navora.example/")));
}

TEST_F(NavoraAppDelegateMessagesTest, DropsAForeignMainFrame) {
  for (const char* url : {"https://remote.example/", "http://navora.example/",
                          "https://navora.example:444/", "https://navora.example.remote.example/",
                          "https://user@navora.example/", "about:blank", "file:///tmp/index.html"})
    EXPECT_FALSE(accepts("{}", mainFrame(url))) << url;
}

TEST_F(NavoraAppDelegateMessagesTest, DropsAFrameWithoutAUrl) {
  EXPECT_FALSE(accepts("{}", FrameInfo{true, std::nullopt}));
  EXPECT_FALSE(accepts("{}", FrameInfo{}));
}

TEST_F(NavoraAppDelegateMessagesTest, AcceptsAMessageOfTheLargestSizeAndDropsOneByteMore) {
  EXPECT_TRUE(accepts(bodyOfSize(maximumBytes)));
  EXPECT_FALSE(accepts(bodyOfSize(maximumBytes + 1)));
}

TEST_F(NavoraAppDelegateMessagesTest, DropsABodyThatIsNotOneJsonValue) {
  for (const char* body : {"", "{", "{} {}", "undefined", "'text'", "\"\xFF\"", "[1,]", "NaN"})
    EXPECT_FALSE(accepts(body)) << body;
}

TEST_F(NavoraAppDelegateMessagesTest, DropsABodyThatIsNestedTooDeeply) {
  EXPECT_FALSE(accepts(std::string(10000, '[') + std::string(10000, ']')));
}

TEST_F(NavoraAppDelegateMessagesTest, PublishesTheTimeZoneWhateverTheDetectionMessageSays) {
  system().timeZone = "Asia/Tokyo";
  for (const char* body : {"{}", "null", "\"text\"", "[1]", "7", "false"}) {
    EXPECT_TRUE(accepts(body)) << body;
    EXPECT_EQ(webView().scripts().back(), DesktopTimeZone::script("Asia/Tokyo"));
  }
}

// The message was still on its way when the page was left.
TEST_F(NavoraAppDelegateMessagesTest, PublishesNoTimeZoneToAPageThatIsForeignByThen) {
  webView().setUrl(testUrl("https://remote.example/"));
  EXPECT_FALSE(accepts("{}", mainFrame("https://navora.example/")));
}

TEST_F(NavoraAppDelegateMessagesTest, DropsAMessageUnderAnUnknownName) {
  for (const char* name : {"navoraUnknown", "navoralocale", ""}) {
    delegate->didReceiveScriptMessage(
        {name, R"({"requestedLocale": "de"})", mainFrame("https://navora.example/")});
  }
  EXPECT_THAT(log().take(), IsEmpty());
  EXPECT_EQ(DesktopLocale::requested, "system");
}

}  // namespace
}  // namespace navora
