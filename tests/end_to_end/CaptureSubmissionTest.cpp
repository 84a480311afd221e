#include <algorithm>

#include <gmock/gmock.h>

#include "end_to_end/CaptureTest.h"

namespace navora::driver {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class CaptureSubmissionTest : public CaptureTest {
 protected:
  static std::vector<std::string> namesOf(const RecordedRequest& request) {
    std::vector<std::string> names;
    for (const auto& [name, value] : request.headers)
      names.push_back(name);
    return names;
  }
  // Returns the headers that the application adds, after those of the HTTP library.
  static std::vector<std::string> ownNamesOf(const RecordedRequest& request) {
    const std::vector<std::string> own{"Cookie",
                                       "Accept",
                                       "Accept-Language",
                                       "X-Navora-Surface",
                                       "X-Navora-Session-Id",
                                       "X-Navora-Flow-Id",
                                       "Content-Type",
                                       "Prefer",
                                       "Idempotency-Key"};
    std::vector<std::string> names = namesOf(request);
    std::erase_if(names,
                  [&](const std::string& name) { return std::ranges::count(own, name) == 0; });
    return names;
  }
};

TEST_F(CaptureSubmissionTest, StoresANoteFromAnotherProgramAndReturnsToIt) {
  const auto mainBefore = application().waitForMainWindow();
  sendNote("Buy bread, \xC3\xA9t\xC3\xA9 \xF0\x9F\x99\x82");
  waitForStoredNotes({"Buy bread, \xC3\xA9t\xC3\xA9 \xF0\x9F\x99\x82"});
  waitUntilPanelHidden();
  desktop().display().waitUntilActive(other().id());
  EXPECT_FALSE(application().waitForMainWindow().active);
  EXPECT_EQ(application().waitForMainWindow().content, mainBefore.content);
  openPanel();
  EXPECT_EQ(draft(), "");
}

TEST_F(CaptureSubmissionTest, SendsItsHeadersAndTheBodyOnce) {
  sendNote("Note");
  waitForStoredNotes({"Note"});
  const auto asked = serviceClient().requests("GET", "/api/auth/me");
  ASSERT_EQ(asked.size(), 1u);
  ASSERT_EQ(posts().size(), 1u);
  const RecordedRequest posted = posts().front();
  EXPECT_THAT(ownNamesOf(asked.front()),
              UnorderedElementsAre("Cookie", "Accept", "Accept-Language", "X-Navora-Surface",
                                   "X-Navora-Session-Id", "X-Navora-Flow-Id"));
  EXPECT_THAT(ownNamesOf(posted),
              UnorderedElementsAre("Cookie", "Accept", "Accept-Language", "X-Navora-Surface",
                                   "X-Navora-Session-Id", "X-Navora-Flow-Id", "Content-Type",
                                   "Prefer", "Idempotency-Key"));
  EXPECT_EQ(posted.header("X-Navora-Surface"), "mac_native");
  EXPECT_EQ(posted.header("Accept"), "application/json");
  EXPECT_EQ(posted.header("Prefer"), "respond-async");
  EXPECT_EQ(posted.header("Cookie"), asked.front().header("Cookie"));
  EXPECT_THAT(*posted.header("Idempotency-Key"),
              testing::MatchesRegex("mac-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[0-9A-F]{4}-"
                                    "[0-9A-F]{12}"));
  EXPECT_EQ(Json::parse(posted.body).at("raw"), "Note");
}

TEST_F(CaptureSubmissionTest, ShowsTheNoteInTheTodayView) {
  sendNote("A note from elsewhere");
  page().waitUntilTrue(
      "[...document.querySelectorAll('#captures > *')].some((note) => "
      "note.innerText.includes('A note from elsewhere'))",
      "the note appears in the page");
}

TEST_F(CaptureSubmissionTest, SendsWithTheButton) {
  openPanel();
  typeDraft("By hand");
  desktop().mouse().click(widget("push button", "Save note").extents().center());
  waitForStoredNotes({"By hand"});
  waitUntilPanelHidden();
}

TEST_F(CaptureSubmissionTest, KeepsLineBreaksWithinAndTrimsThemAround) {
  openPanel();
  desktop().keyboard().type("\n one\ntwo \n");
  desktop().keyboard().chord(sendKey);
  waitForStoredNotes({"one\ntwo"});
}

TEST_F(CaptureSubmissionTest, SendsNothingWithoutAText) {
  openPanel();
  desktop().keyboard().chord(sendKey);
  desktop().keyboard().type(" \n");
  desktop().keyboard().chord(sendKey);
  typeDraft("x", " \nx");
  EXPECT_THAT(serviceClient().requests("GET", "/api/auth/me"), IsEmpty());
}

TEST_F(CaptureSubmissionTest, SendsTenThousandCharactersButNotOneMore) {
  openPanel();
  auto editor = widget("text");
  editor.setText(std::string(10'001, 'a'));
  waitForMessage("A note can have at most 10,000 characters.");
  desktop().keyboard().chord(sendKey);
  editor.setText(std::string(10'000, 'b'));
  waitForMessage("Ctrl+Enter to send, Enter for a new line");
  EXPECT_THAT(serviceClient().requests("GET", "/api/auth/me"), IsEmpty());
  desktop().keyboard().chord(sendKey);
  waitForStoredNotes({std::string(10'000, 'b')});
}

TEST_F(CaptureSubmissionTest, KeepsTheDraftThroughEscapeAndClicksElsewhere) {
  openPanel();
  typeDraft("Half a thought");
  desktop().keyboard().chord("Escape");
  waitUntilPanelHidden();
  desktop().display().waitUntilActive(other().id());
  openPanel();
  EXPECT_EQ(draft(), "Half a thought");
  desktop().display().activate(application().waitForMainWindow().id);
  waitUntilPanelHidden();
  EXPECT_TRUE(application().waitForMainWindow().active);
  openPanel();
  typeDraft("!", "Half a thought!");
}

TEST_F(CaptureSubmissionTest, OpensOverItsOwnWindowAndKeepsTheKeyFromThePage) {
  desktop().display().activate(application().waitForMainWindow().id);
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  page().evaluate(
      "window.spaces = 0; addEventListener('keydown', (event) => { if (event.code === 'Space') "
      "++window.spaces; }, true)");
  openPanel();
  desktop().keyboard().chord("Escape");
  waitUntilPanelHidden();
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  EXPECT_EQ(page().evaluate("return window.spaces"), 0);
}

TEST_F(CaptureSubmissionTest, WorksWhileTheMainWindowIsHidden) {
  desktop().display().close(application().waitForMainWindow().id);
  application().waitUntilMainWindowHidden();
  sendNote("From the background");
  waitForStoredNotes({"From the background"});
  waitUntilPanelHidden();
  EXPECT_FALSE(application().mainWindow());
}

TEST_F(CaptureSubmissionTest, SendsTelemetry) {
  sendNote("Note");
  waitForStoredNotes({"Note"});
  std::vector<std::string> names;
  waitUntil(
      [&] {
        names.clear();
        for (const Json& event : serviceClient().telemetryEvents())
          names.push_back(event.at("event"));
        return std::ranges::count(names, "native_accepted") > 0;
      },
      "the telemetry arrives");
  EXPECT_THAT(names,
              ElementsAre("native_opened", "native_input", "native_submit", "native_accepted"));
}

}  // namespace
}  // namespace navora::driver
