#include <gmock/gmock.h>

#include "app/DesktopTimeZone.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t maximumBytes = 1024 * 1024;

// An accepted message makes the application publish the time zone.
class NavoraAppDelegateMessagesTest : public AppDelegateTest {
 protected:
  void SetUp() override { launchShowing(testUrl("https://navora.example/")); }

  bool accepts(const std::string& body,
               const FrameInfo& frame = mainFrame("https://navora.example/")) {
    log().take();
    webView().post("navoraTimeZoneDetection", body, frame);
    return !log().take().empty();
  }

  // Returns a JSON string of `size` bytes, including its quotes.
  static std::string bodyOfSize(std::size_t size) { return '"' + std::string(size - 2, 'a') + '"'; }
};

TEST_F(NavoraAppDelegateMessagesTest, AcceptsTheMainFrameOfAPageOfTheOrigin) {
  EXPECT_TRUE(accepts("{}", mainFrame("https://navora.example/")));
  EXPECT_TRUE(accepts("{}", mainFrame("https://navora.example:443/settings#locale")));
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresASubframeEvenOfTheOrigin) {
  EXPECT_FALSE(accepts("{}", subframe("https://navora.example/")));
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresAForeignMainFrame) {
  for (const char* url : {"https://remote.example/", "http://navora.example/",
                          "https://navora.example:444/", "https://navora.example.remote.example/",
                          "https://user@navora.example/", "about:blank", "file:///tmp/index.html"})
    EXPECT_FALSE(accepts("{}", mainFrame(url))) << url;
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresAFrameWithoutAUrl) {
  EXPECT_FALSE(accepts("{}", FrameInfo{true, std::nullopt}));
  EXPECT_FALSE(accepts("{}", FrameInfo{}));
}

TEST_F(NavoraAppDelegateMessagesTest, AcceptsAMessageOfTheMaximumSizeAndIgnoresOneByteMore) {
  EXPECT_TRUE(accepts(bodyOfSize(maximumBytes)));
  EXPECT_FALSE(accepts(bodyOfSize(maximumBytes + 1)));
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresABodyThatIsNotOneJsonValue) {
  for (const char* body : {"", "{", "{} {}", "undefined", "'text'", "\"\xFF\"", "[1,]", "NaN"})
    EXPECT_FALSE(accepts(body)) << body;
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresABodyThatIsNestedTooDeeply) {
  EXPECT_FALSE(accepts(std::string(10000, '[') + std::string(10000, ']')));
}

TEST_F(NavoraAppDelegateMessagesTest, PublishesTheTimeZoneForAnyBodyOfTheDetectionMessage) {
  system().timeZone = "Asia/Tokyo";
  for (const char* body : {"{}", "null", "\"text\"", "[1]", "7", "false"}) {
    EXPECT_TRUE(accepts(body)) << body;
    EXPECT_EQ(webView().scripts().back(), DesktopTimeZone::script("Asia/Tokyo"));
  }
}

// The user may leave the page before its message arrives.
TEST_F(NavoraAppDelegateMessagesTest, PublishesNoTimeZoneIfTheShownPageIsForeign) {
  webView().setUrl(testUrl("https://remote.example/"));
  EXPECT_FALSE(accepts("{}", mainFrame("https://navora.example/")));
}

TEST_F(NavoraAppDelegateMessagesTest, IgnoresAMessageWithAnUnknownName) {
  for (const char* name : {"navoraUnknown", "navoralocale", ""}) {
    delegate_->didReceiveScriptMessage(
        {name, R"({"requestedLocale": "de"})", mainFrame("https://navora.example/")});
  }
  EXPECT_THAT(log().take(), IsEmpty());
  EXPECT_EQ(DesktopLocale::requested, "system");
}

}  // namespace
}  // namespace navora
