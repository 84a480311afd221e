#include <algorithm>

#include <gmock/gmock.h>

#include "end_to_end/CaptureTest.h"

namespace navora::driver {
namespace {

constexpr const char* account = "/api/auth/me";

const std::string savingText = "Saving your note…";
const std::string stillHereText =
    "The server didn’t confirm that the note was saved. Your draft is still here.";

// A fault at one stage of a submission.
struct Fault {
  const char* name;
  const char* method;
  const char* path;
  Json action;
  // Whether the text may be edited afterwards, because no note can have been stored.
  bool editable = false;
};

class CaptureFaultTest : public CaptureTest, public testing::WithParamInterface<Fault> {};

// Checks that after any fault the draft is kept or the service has stored exactly one note, and
// that the next attempt stores it.
TEST_P(CaptureFaultTest, LosesNoTextAndStoresItOnce) {
  const Fault& fault = GetParam();
  serviceClient().addFault(fault.method, fault.path, fault.action);
  sendNote("Precious");
  waitUntil(
      [&] {
        return !serviceClient().requests(fault.method, fault.path).empty() && panel() &&
               widget("push button", "Save note").has(AccessibleState::sensitive);
      },
      "the submission has failed", std::chrono::seconds(45));
  EXPECT_EQ(draft(), "Precious");
  EXPECT_EQ(isEditable(), fault.editable);
  EXPECT_LE(storedNotes().size(), 1u);

  serviceClient().clearFaults();
  const auto before = posts();
  desktop().keyboard().chord(sendKey);
  waitUntilPanelHidden();
  EXPECT_THAT(storedNotes(), testing::ElementsAre("Precious"));
  for (const auto& request : before) {
    EXPECT_EQ(request.body, posts().back().body);
    EXPECT_EQ(request.header("Idempotency-Key"), posts().back().header("Idempotency-Key"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    At, CaptureFaultTest,
    testing::Values(
        Fault{"AccountDroppedBefore", "GET", account, {{"drop", "before"}}, true},
        Fault{"AccountDroppedDuring", "GET", account, {{"drop", "during"}, {"bytes", 5}}, true},
        Fault{"AccountGarbage", "GET", account, {{"garbage", true}}, true},
        Fault{"AccountBroken", "GET", account, {{"status", 503}, {"body", "no"}}, true},
        Fault{"AccountTooLarge", "GET", account, {{"oversize", 1'048'577}}, true},
        Fault{"PostDroppedBefore", "POST", capturesPath, {{"drop", "before"}}},
        Fault{"PostDroppedDuring", "POST", capturesPath, {{"drop", "during"}, {"bytes", 60}}},
        Fault{"PostDroppedAfter", "POST", capturesPath, {{"drop", "after"}}},
        Fault{"PostGarbage", "POST", capturesPath, {{"garbage", true}}},
        Fault{"PostBroken", "POST", capturesPath, {{"status", 500}, {"body", "{}"}}},
        Fault{"PostStoredButBroken",
              "POST",
              capturesPath,
              {{"process", true}, {"status", 502}, {"body", "{}"}}},
        Fault{"PostTooLarge", "POST", capturesPath, {{"process", true}, {"oversize", 1'048'577}}},
        Fault{"PostConflict", "POST", capturesPath, {{"status", 409}, {"body", "{}"}}},
        Fault{"PostRefused", "POST", capturesPath, {{"status", 422}, {"body", "{}"}}, true},
        Fault{"PostRedirected",
              "POST",
              capturesPath,
              {{"process", true}, {"redirect", "https://www.example.com/"}}}),
    [](const auto& fault) { return fault.param.name; });

class CaptureFailureTest : public CaptureTest {};

TEST_F(CaptureFailureTest, SaysThatItIsOfflineAndKeepsTheDraftEditable) {
  service().stop();
  sendNote("Offline");
  waitForMessage(offlineText);
  EXPECT_TRUE(isEditable());
  typeDraft(", still", "Offline, still");
  desktop().keyboard().chord("Escape");
  waitUntilPanelHidden();
  openPanel();
  EXPECT_EQ(draft(), "Offline, still");
}

TEST_F(CaptureFailureTest, GivesTheKeyboardToTheEditorAfterThePressedButtonFailed) {
  service().stop();
  openPanel();
  typeDraft("By mouse");
  desktop().mouse().click(widget("push button", "Save note").extents().center());
  waitForMessage(offlineText);
  typeDraft(", by key", "By mouse, by key");
  int failures = 1;
  for (const char* key : {"space", "Return"}) {
    desktop().keyboard().chord("Control+Tab");
    waitUntil([&] { return widget("push button", "Save note").has(AccessibleState::focused); },
              "the button has the focus");
    desktop().keyboard().chord(key);
    waitUntil([&] { return widget("text").has(AccessibleState::focused); },
              "the editor has the focus");
    waitForMessage(offlineText);
    waitUntil([&] { return isEditable(); }, "the draft can be edited");
    typeDraft("!", "By mouse, by key" + std::string(static_cast<std::size_t>(failures++), '!'));
  }
}

TEST_F(CaptureFailureTest, ShowsWhatTheServiceSays) {
  serviceClient().addFault("POST", capturesPath,
                           {{"status", 422}, {"body", R"({"error": {"message": "Too dull"}})"}}, 1);
  sendNote("Dull");
  waitForMessage("Too dull");
  typeDraft("er", "Duller");
  desktop().keyboard().chord(sendKey);
  waitForStoredNotes({"Duller"});
  EXPECT_NE(posts()[0].header("Idempotency-Key"), posts()[1].header("Idempotency-Key"));
}

// A request times out after 20 s.
TEST_F(CaptureFailureTest, TimesOutAndSendsTheSameAgain) {
  serviceClient().addFault("POST", capturesPath, {{"hang", true}});
  sendNote("Patient");
  serviceClient().waitForRequests("POST", capturesPath);
  const auto begin = std::chrono::steady_clock::now();
  waitForMessage(savingText);
  EXPECT_FALSE(isEditable());
  EXPECT_FALSE(widget("push button", "Save note").has(AccessibleState::sensitive));
  waitForMessage(sendAgainText, std::chrono::seconds(60));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
  EXPECT_EQ(draft(), "Patient");
  EXPECT_FALSE(isEditable());

  serviceClient().clearFaults();
  desktop().keyboard().chord(sendKey);
  waitUntilPanelHidden();
  EXPECT_THAT(storedNotes(), testing::ElementsAre("Patient"));
  ASSERT_EQ(posts().size(), 2u);
  EXPECT_EQ(posts()[0].header("Idempotency-Key"), posts()[1].header("Idempotency-Key"));
  EXPECT_EQ(posts()[0].body, posts()[1].body);
}

TEST_F(CaptureFailureTest, RejectsAConfirmationWithAForeignStatusUrl) {
  const Json reply{{"captureId", "c-1"},
                   {"jobId", "j-1"},
                   {"statusUrl", "https://www.example.com/api/jobs/j-1"}};
  serviceClient().addFault("POST", capturesPath,
                           {{"process", true}, {"status", 202}, {"body", reply.dump()}}, 1);
  sendNote("Where to");
  waitForMessage(stillHereText);
  EXPECT_EQ(draft(), "Where to");
  EXPECT_FALSE(isEditable());
  desktop().keyboard().chord(sendKey);
  waitUntilPanelHidden();
  EXPECT_THAT(storedNotes(), testing::ElementsAre("Where to"));
  ASSERT_EQ(posts().size(), 2u);
  EXPECT_EQ(posts()[0].header("Idempotency-Key"), posts()[1].header("Idempotency-Key"));
}

TEST_F(CaptureFailureTest, SendsADraftOnlyForTheUserWhoWroteIt) {
  serviceClient().addFault("POST", capturesPath, {{"drop", "before"}}, 1);
  sendNote("Mine");
  waitUntil([&] { return !posts().empty(); }, "the note was sent");
  waitUntil([&] { return widget("push button", "Save note").has(AccessibleState::sensitive); },
            "the first try has failed");
  serviceClient().switchAccount("another");
  desktop().keyboard().chord(sendKey);
  waitUntil([&] { return serviceClient().requests("GET", account).size() == 2; },
            "the account was asked for again");
  waitUntil([&] { return widget("push button", "Save note").has(AccessibleState::sensitive); },
            "the second try has failed");
  EXPECT_EQ(draft(), "Mine");
  EXPECT_EQ(posts().size(), 1u);
  serviceClient().switchAccount("demo");
  desktop().keyboard().chord(sendKey);
  waitUntilPanelHidden();
  EXPECT_THAT(storedNotes(), testing::ElementsAre("Mine"));
  EXPECT_THAT(storedNotes("another"), testing::IsEmpty());
}

TEST_F(CaptureFailureTest, OpensTheLoginAndReturnsWithTheDraft) {
  serviceClient().signEverybodyOut();
  sendNote("Before the login");
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  EXPECT_FALSE(panel());
  signIn();
  waitUntil([&] { return panel() && panel()->active; }, "the panel comes back");
  EXPECT_EQ(draft(), "Before the login");
  EXPECT_THAT(storedNotes(), testing::IsEmpty());
  desktop().keyboard().chord(sendKey);
  waitForStoredNotes({"Before the login"});
}

// Cookies with the name of the session's that must not be sent.
TEST_F(CaptureFailureTest, SendsNoCookieOfAnotherPathOrTime) {
  serviceClient().setCookies(
      page(), {"tolvin_session=; Path=/; Max-Age=0", "tolvin_session=x; Path=/api; Max-Age=600"});
  sendNote("No session");
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  EXPECT_THAT(serviceClient().requests("GET", account), testing::IsEmpty());
  EXPECT_FALSE(panel());
}

}  // namespace
}  // namespace navora::driver
