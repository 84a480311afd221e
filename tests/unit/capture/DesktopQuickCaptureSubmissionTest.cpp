#include <gmock/gmock.h>

#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

class DesktopQuickCaptureSubmissionTest : public QuickCaptureTest {};

TEST_F(DesktopQuickCaptureSubmissionTest, FetchesTheAccountAndPostsTheNote) {
  open("  First thought\n");
  capture->submit();
  answerCookies();
  ASSERT_EQ(network().requests.size(), 1u);
  EXPECT_EQ(lastRequest().method, "GET");
  EXPECT_EQ(lastRequest().url, testUrl("https://navora.example/api/auth/me"));
  EXPECT_EQ(lastRequest().timeoutSeconds, 60);
  answerAccount();
  answerModel();
  ASSERT_EQ(network().requests.size(), 2u);
  EXPECT_EQ(lastRequest().method, "POST");
  EXPECT_EQ(lastRequest().url, testUrl("https://navora.example/api/captures"));
  EXPECT_EQ(lastBody(), (Json{{"raw", "First thought"}}));
  EXPECT_EQ(lastRequest().body, R"({"raw":"First thought"})");
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsWhatAnInputMethodIsComposing) {
  open();
  editor().compose("かな");
  submitUntilPost();
  EXPECT_EQ(lastBody(), (Json{{"raw", "かな"}}));
  EXPECT_FALSE(editor().isEditable());
}

TEST_F(DesktopQuickCaptureSubmissionTest, WritesItsStepsToTheDebugLog) {
  open("Secret");
  submitUntilPost();
  network().fail(-1);
  resubmitUntilPost();
  answerConfirmation();
  EXPECT_THAT(
      platform.system().debugged,
      ElementsAre(
          "capture: Sending a note of 6 UTF-16 units", "capture: The web view has a session cookie",
          "capture: GET https://navora.example/api/auth/me: status 200",
          "capture: POST https://navora.example/api/captures: The network is the test's",
          "capture: The note is not confirmed: network",
          "capture: Sending a note of 6 UTF-16 units", "capture: The web view has a session cookie",
          "capture: GET https://navora.example/api/auth/me: status 200",
          "capture: POST https://navora.example/api/captures: status 202",
          std::string("capture: The service has stored the note as capture ") + captureId));
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsItsHeadersInOrder) {
  DesktopLocale::requested = "pt-BR";
  open("Note");
  submitUntilPost();
  const auto& asked = network().requests[0].headers;
  const auto& posted = network().requests[1].headers;
  EXPECT_THAT(asked,
              ElementsAre(Pair("Cookie", "tolvin_session=abc"), Pair("Accept", "application/json"),
                          Pair("Accept-Language", "pt-BR"), Pair("X-Navora-Surface", "mac_native"),
                          Pair("X-Navora-Session-Id", "00000000-0000-4000-8000-abcdef000001"),
                          Pair("X-Navora-Flow-Id", "00000000-0000-4000-8000-abcdef000002")));
  ASSERT_EQ(posted.size(), 9u);
  EXPECT_TRUE(std::equal(asked.begin(), asked.end(), posted.begin()));
  EXPECT_THAT(std::vector(posted.begin() + 6, posted.end()),
              ElementsAre(Pair("Content-Type", "application/json"), Pair("Prefer", "respond-async"),
                          Pair("Idempotency-Key", "mac-00000000-0000-4000-8000-ABCDEF000003")));
}

TEST_F(DesktopQuickCaptureSubmissionTest, UsesOneHttpSessionWithLimits) {
  open("Note");
  EXPECT_THAT(network().sessions, IsEmpty());
  submitUntilPost();
  EXPECT_THAT(network().sessions, ElementsAre(HttpSessionConfiguration{20, 30, 1'048'576}));
}

TEST_F(DesktopQuickCaptureSubmissionTest, ReadsTheModelFromThePage) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  EXPECT_THAT(webView->scripts().back(),
              StartsWith("(() => {\n  const provider = document.querySelector('#ai-provider');\n"));
  EXPECT_TRUE(webView->scripts().back().ends_with("  return result;\n})()"));
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsThePagesModel) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  answerModel({{"provider", "openai"}, {"model", "m-1"}, {"more", "x"}});
  EXPECT_EQ(lastBody(), (Json{{"raw", "Note"}, {"provider", "openai"}, {"model", "m-1"}}));
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsNoModelUnlessAllItsValuesAreText) {
  for (const Json& answer : {Json(), Json("openai"), Json::array({"openai"}), Json(7),
                             Json{{"provider", "openai"}, {"model", 7}}}) {
    openAnew("Note");
    capture->submit();
    answerCookies();
    answerAccount();
    answerModel(answer);
    EXPECT_EQ(lastBody(), (Json{{"raw", "Note"}})) << answer;
  }
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsTheNoteIfThePageCannotBeEvaluated) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  webView->finishEvaluation(Unexpected(PlatformError{"js", 4, "gone"}));
  storeDraft();
  EXPECT_EQ(lastBody(), (Json{{"raw", "Note"}}));
}

TEST_F(DesktopQuickCaptureSubmissionTest, DoesNotEvaluateAForeignPage) {
  webView->setUrl(testUrl("https://remote.example/"));
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  storeDraft();
  EXPECT_THAT(webView->scripts(), IsEmpty());
  EXPECT_EQ(lastBody(), (Json{{"raw", "Note"}}));
}

TEST_F(DesktopQuickCaptureSubmissionTest, IsBusyUntilTheReplyArrives) {
  open("Note");
  capture->submit();
  EXPECT_FALSE(editor().isEditable());
  EXPECT_FALSE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().submitOpacity(), 0.65);
  EXPECT_EQ(panel().message(), "Сохраняем запись…");
  EXPECT_TRUE(capture->preventsRestart());
  capture->submit();
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(DesktopQuickCaptureSubmissionTest, ClearsThePanelAndRestoresTheFocusWhenItIsConfirmed) {
  open("Note");
  submitUntilPost();
  log().take();
  answerConfirmation();
  EXPECT_THAT(log().take(),
              ElementsAre("editor.clear", "panel.orderOut", "application.activate Letters"));
  EXPECT_EQ(editor().text(), "");
  EXPECT_FALSE(panel().isVisible());
  EXPECT_TRUE(editor().isEditable());
  EXPECT_FALSE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().submitOpacity(), 1);
  EXPECT_EQ(panel().message(), "⌘+Enter — отправить, Enter — новая строка");
  EXPECT_FALSE(capture->preventsRestart());
}

TEST_F(DesktopQuickCaptureSubmissionTest, SendsTheNextNoteWithANewKeyAndFlow) {
  open("First");
  submitUntilPost();
  const HttpRequest first = lastRequest();
  answerConfirmation();
  open("Second");
  submitUntilPost();
  const HttpRequest second = lastRequest();
  EXPECT_EQ(second.headers[4], first.headers[4]);
  EXPECT_NE(second.headers[5], first.headers[5]);
  EXPECT_NE(second.headers[8], first.headers[8]);
}

TEST_F(DesktopQuickCaptureSubmissionTest, DoesNotSendInvalidTexts) {
  open();
  for (const std::string& text : {std::string(), std::string(" \n\t"), std::string(10'001, 'a')}) {
    editor().type(text);
    capture->submit();
    EXPECT_EQ(webView->cookieQuestions(), 0u);
    EXPECT_TRUE(editor().isEditable());
  }
  editor().type(std::string(10'000, 'a') + " \n");
  capture->submit();
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(DesktopQuickCaptureSubmissionTest, ContinuesWhileThePanelIsHidden) {
  open("Note");
  submitUntilPost();
  panel().clickElsewhere();
  log().take();
  answerConfirmation();
  EXPECT_EQ(editor().text(), "");
  EXPECT_THAT(log().take(), ElementsAre("editor.clear", "panel.orderOut"));
}

TEST_F(DesktopQuickCaptureSubmissionTest, IsCancelledWhenTheControllerIsDestroyed) {
  open("Note");
  capture->submit();
  capture.reset();
  answerCookies();
  EXPECT_THAT(network().requests, IsEmpty());
}

}  // namespace
}  // namespace navora
