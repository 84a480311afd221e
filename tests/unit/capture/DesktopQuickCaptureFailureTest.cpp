#include <gmock/gmock.h>

#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char* loginText = "Войдите в Навору. Черновик останется здесь.";
constexpr const char* untrustedText = "Не удалось проверить ответ сервера. Черновик сохранён.";
constexpr const char* unconfirmedText = "Сервер не подтвердил сохранение. Черновик остался здесь.";

class DesktopQuickCaptureFailureTest : public QuickCaptureTest {
 protected:
  void expectDraft(bool editable, const std::string& message) {
    EXPECT_EQ(editor().text(), "Note");
    EXPECT_EQ(editor().isEditable(), editable);
    EXPECT_EQ(panel().message(), message);
    EXPECT_TRUE(panel().isSubmitEnabled());
    EXPECT_EQ(panel().submitOpacity(), 1);
    EXPECT_TRUE(capture->preventsRestart());
  }
  // Expects the draft to be frozen and a retry to repeat the identical request.
  void expectSafeRetry(const std::string& message) {
    expectDraft(false, message);
    EXPECT_TRUE(panel().isVisible());
    const HttpRequest first = lastRequest();
    resubmitUntilPost();
    EXPECT_EQ(lastRequest(), first);
    answerConfirmation();
    EXPECT_EQ(editor().text(), "");
    EXPECT_TRUE(editor().isEditable());
  }
  // The reason reported to telemetry for the last failure.
  std::string reason() {
    std::string last = "none";
    for (const Json& event : flushTelemetry()) {
      if (event.at("event") == "native_failed") last = event.at("reason");
    }
    return last;
  }
};

TEST_F(DesktopQuickCaptureFailureTest, ReturnsTheKeyboardFromThePressedButtonToTheEditor) {
  open("Note");
  editor().loseFocus();
  panel().clickSubmit();
  EXPECT_TRUE(editor().isFocused());
  answerCookies();
  network().fail(PlatformError::timedOutCode);
  expectDraft(true, offlineText);
  EXPECT_TRUE(editor().isFocused());
}

TEST_F(DesktopQuickCaptureFailureTest, ReportsANetworkFailureBeforeThePost) {
  open("Note");
  capture->submit();
  answerCookies();
  network().fail(PlatformError::timedOutCode);
  expectDraft(true, offlineText);
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(reason(), "network");
}

TEST_F(DesktopQuickCaptureFailureTest, TreatsAnAccountReplyThatIsNotJsonAsANetworkFailure) {
  open("Note");
  capture->submit();
  answerCookies();
  network().answer(503, "<html>");
  expectDraft(true, offlineText);
}

TEST_F(DesktopQuickCaptureFailureTest, FreezesTheTextAfterATimedOutPost) {
  open("Note");
  submitUntilPost();
  network().fail(PlatformError::timedOutCode);
  expectSafeRetry(repeatText);
}

TEST_F(DesktopQuickCaptureFailureTest, FreezesTheTextAfterATruncatedReply) {
  open("Note");
  submitUntilPost();
  network().answer(202, R"({"captureId": ")");
  expectSafeRetry(repeatText);
}

TEST_F(DesktopQuickCaptureFailureTest, FreezesTheTextIfTheReplyIsNotAnObject) {
  open("Note");
  submitUntilPost();
  network().answer(202, "[]");
  expectSafeRetry(repeatText);
}

TEST_F(DesktopQuickCaptureFailureTest, FreezesTheTextIfTheReplyIsTooLarge) {
  open("Note");
  submitUntilPost();
  network().finish(HttpResponse{202, testUrl("https://navora.example/api/captures"), "", true});
  expectSafeRetry(untrustedText);
}

TEST_F(DesktopQuickCaptureFailureTest, AcceptsAReplyOfExactlyOneMebibyte) {
  open("Note");
  submitUntilPost();
  std::string body = confirmation().dump();
  network().answer(202, body + std::string(1'048'577 - body.size(), ' '));
  expectDraft(false, untrustedText);
  resubmitUntilPost();
  network().answer(202, body + std::string(1'048'576 - body.size(), ' '));
  EXPECT_EQ(editor().text(), "");
}

TEST_F(DesktopQuickCaptureFailureTest, FreezesTheTextIfTheReplyIsFromAnotherOrigin) {
  for (const auto& url :
       {std::optional(testUrl("https://remote.example/api/captures")), std::optional<Url>()}) {
    openAnew("Note");
    submitUntilPost();
    network().finish(HttpResponse{202, url, confirmation().dump(), false});
    expectSafeRetry(untrustedText);
  }
}

TEST_F(DesktopQuickCaptureFailureTest, TreatsOnlyAConfirmationAsStored) {
  Json foreign = confirmation();
  foreign["statusUrl"] = "https://remote.example" + foreign["statusUrl"].get<std::string>();
  Json jobless = confirmation();
  jobless.erase("jobId");
  const std::pair<int, Json> answers[] = {
      {201, confirmation()}, {200, confirmation()}, {202, foreign},       {202, jobless},
      {302, confirmation()}, {500, Json::object()}, {409, Json::object()}};
  for (const auto& [status, body] : answers) {
    openAnew("Note");
    submitUntilPost();
    network().answer(status, body.dump());
    expectSafeRetry(unconfirmedText);
  }
}

TEST_F(DesktopQuickCaptureFailureTest, ShowsTheServicesErrorMessage) {
  open("Note");
  submitUntilPost();
  network().answer(500, R"({"error": {"message": "Out of ink"}})");
  expectDraft(false, "Out of ink");
  EXPECT_EQ(reason(), "unconfirmed");
}

TEST_F(DesktopQuickCaptureFailureTest, IgnoresAnErrorMessageThatIsNotText) {
  for (const char* body : {R"({"error": {"message": 7}})", R"({"error": "text"})",
                           R"({"error": ["message"]})", R"({"message": "text"})"}) {
    openAnew("Note");
    submitUntilPost();
    network().answer(422, body);
    EXPECT_EQ(panel().message(), unconfirmedText) << body;
  }
}

TEST_F(DesktopQuickCaptureFailureTest, AllowsEditingAfterARefusalOfTheFirstAttempt) {
  open("Note");
  submitUntilPost();
  const auto key = lastRequest().headers[8];
  network().answer(422, R"({"error": {"message": "Too dull"}})");
  expectDraft(true, "Too dull");
  editor().type("A better note");
  submitUntilPost();
  EXPECT_EQ(lastBody().at("raw"), "A better note");
  EXPECT_NE(lastRequest().headers[8], key);
}

TEST_F(DesktopQuickCaptureFailureTest, ReusesTheKeyWhenARefusedTextIsSentAgain) {
  open("Note");
  submitUntilPost();
  const HttpRequest first = lastRequest();
  network().answer(422, "{}");
  resubmitUntilPost();
  EXPECT_EQ(lastRequest(), first);
}

TEST_F(DesktopQuickCaptureFailureTest, DiscardsARefusedAttemptWhenItsTextIsDeleted) {
  open("Note");
  submitUntilPost();
  const auto key = lastRequest().headers[8];
  network().answer(422, "{}");
  editor().type("");
  editor().type("Note");
  submitUntilPost();
  EXPECT_NE(lastRequest().headers[8], key);
}

TEST_F(DesktopQuickCaptureFailureTest, StaysUnconfirmedIfARetryIsRefused) {
  open("Note");
  submitUntilPost();
  network().fail(PlatformError::timedOutCode);
  resubmitUntilPost();
  network().answer(422, R"({"error": {"message": "Too dull"}})");
  expectSafeRetry("Too dull");
}

TEST_F(DesktopQuickCaptureFailureTest, RejectsAnyOtherTextWhileANoteIsUnconfirmed) {
  open("Note");
  submitUntilPost();
  network().fail(PlatformError::timedOutCode);
  // The editor is read-only, so its text cannot normally change here; the submission still checks.
  editor().setEditable(true);
  editor().type("Another note");
  EXPECT_EQ(panel().message(), repeatText);
  const auto sent = network().requests.size();
  capture->submit();
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  EXPECT_EQ(network().requests.size(), sent);
  EXPECT_EQ(panel().message(),
            "Сначала нужно подтвердить прежнюю отправку. Верните исходный текст для безопасного "
            "повтора.");
}

TEST_F(DesktopQuickCaptureFailureTest, SendsAnAttemptOnlyForTheAccountThatStartedIt) {
  open("Note");
  submitUntilPost();
  network().fail(PlatformError::timedOutCode);
  const auto sent = network().requests.size();
  capture->submit();
  answerCookies();
  answerAccount("user-2");
  EXPECT_EQ(network().requests.size(), sent + 1);
  expectDraft(false, changedText);
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(reason(), "account_changed");
  resubmitUntilPost();
  answerConfirmation();
  EXPECT_EQ(editor().text(), "");
}

TEST_F(DesktopQuickCaptureFailureTest, RequestsALoginWithoutASessionCookie) {
  int logins = 0;
  webView->cookies.clear();
  open("Note");
  capture->onLogin = [&] {
    ++logins;
    EXPECT_FALSE(panel().isVisible());
  };
  capture->submit();
  answerCookies();
  EXPECT_EQ(logins, 1);
  EXPECT_THAT(network().requests, IsEmpty());
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
  expectDraft(true, loginText);
}

TEST_F(DesktopQuickCaptureFailureTest, RequestsALoginIfTheAccountIsUnknown) {
  const std::pair<int, const char*> answers[] = {{401, ""},
                                                 {403, "{}"},
                                                 {200, "{}"},
                                                 {200, R"({"user": "me"})"},
                                                 {200, R"({"user": {}})"},
                                                 {200, R"({"user": {"id": 7}})"},
                                                 {204, R"({"user": {"id": "user-1"}})"}};
  for (const auto& [status, body] : answers) {
    openAnew("Note");
    int logins = 0;
    capture->onLogin = [&] { ++logins; };
    capture->submit();
    answerCookies();
    network().answer(status, body);
    EXPECT_EQ(logins, 1) << status << body;
    expectDraft(true, loginText);
    EXPECT_FALSE(panel().isVisible());
  }
}

TEST_F(DesktopQuickCaptureFailureTest, RequestsALoginIfTheSessionEndsBeforeThePost) {
  open("Note");
  submitUntilPost();
  network().answer(401, "{}");
  expectDraft(false, loginText);
  EXPECT_FALSE(panel().isVisible());
  EXPECT_THAT(log().take(), Not(Contains("application.activate Letters")));
  EXPECT_EQ(reason(), "login");
}

TEST_F(DesktopQuickCaptureFailureTest, RequestsALoginIfTheWebViewIsDestroyed) {
  open("Note");
  int logins = 0;
  capture->onLogin = [&] { ++logins; };
  webView.reset();
  capture->submit();
  EXPECT_EQ(logins, 1);
}

TEST_F(DesktopQuickCaptureFailureTest, ReopensWithTheDraftAfterTheLogin) {
  locale.setCatalogs(R"({"en": {"Вход выполнен.": "Signed in.",
      "Сохранить запись — {CAPTURE_MOD}+Enter": "{CAPTURE_MOD} saves"}})");
  webView->cookies.clear();
  open("Note");
  capture->submit();
  answerCookies();
  capture->resumeAfterLogin();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(editor().text(), "Note");
  EXPECT_EQ(panel().message(), "Вход выполнен. Сохранить запись — ⌘+Enter");
  EXPECT_THAT(log().take(), Contains("editor.moveCaretToEnd"));
  EXPECT_THAT(network().requests, IsEmpty());
  DesktopLocale::requested = "en";
  capture->refreshLocale();
  EXPECT_EQ(panel().message(), "Signed in. ⌘ saves");
}

TEST_F(DesktopQuickCaptureFailureTest, ReopensOncePerLogin) {
  make();
  capture->resumeAfterLogin();
  EXPECT_FALSE(panel().isVisible());
  webView->cookies.clear();
  open("Note");
  capture->submit();
  answerCookies();
  capture->resumeAfterLogin();
  capture->hide(false);
  capture->resumeAfterLogin();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(DesktopQuickCaptureFailureTest, TranslatesTheErrorWhenTheLanguageChanges) {
  locale.setCatalogs(R"({"en": {
      "Нет связи с сервером. Черновик сохранён — попробуйте ещё раз.": "Offline."}})");
  open("Note");
  capture->submit();
  answerCookies();
  network().fail(PlatformError::timedOutCode);
  DesktopLocale::requested = "en";
  capture->refreshLocale();
  EXPECT_EQ(panel().message(), "Offline.");
}

}  // namespace
}  // namespace navora
