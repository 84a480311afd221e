// The draft across processes, and the failures that the user does not see.
#include <gmock/gmock.h>

#include "capture/CaptureDraft.h"
#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class DesktopQuickCaptureDraftTest : public QuickCaptureTest {
 protected:
  DesktopQuickCaptureDraftTest() { make(); }

  // Acts as a new process that finds the files of the last one.
  void restart() {
    capture.reset();
    make();
  }
  std::optional<CaptureDraft> stored() {
    return disk().content ? CaptureDraft::parse(*disk().content) : std::nullopt;
  }
  void settle() {
    queue().advance(milliseconds(500));
    storeDraft();
  }
};

TEST_F(DesktopQuickCaptureDraftTest, RestoresTheTextWithoutTelemetryOrUndo) {
  open("Half a thou");
  settle();
  log().take();
  restart();
  EXPECT_EQ(editor().text(), "Half a thou");
  EXPECT_TRUE(editor().isEditable());
  EXPECT_TRUE(panel().isSubmitEnabled());
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(panel().message(), hint);
  EXPECT_TRUE(capture->preventsRestart());
  EXPECT_THAT(network().requests, IsEmpty());
}

TEST_F(DesktopQuickCaptureDraftTest, RestoresATextThatIsTooLongWithItsMessage) {
  open(std::string(10'001, 'a'));
  settle();
  restart();
  EXPECT_EQ(panel().message(), tooLong);
  EXPECT_FALSE(panel().isSubmitEnabled());
}

TEST_F(DesktopQuickCaptureDraftTest, FlushesTheLastKeysWhenTheApplicationEnds) {
  open("Written in a hurry");
  capture->flushDraft();
  restart();
  EXPECT_EQ(editor().text(), "Written in a hurry");
}

TEST_F(DesktopQuickCaptureDraftTest, AnEmptiedTextLeavesNoFile) {
  open("Never mind");
  settle();
  editor().type("");
  settle();
  EXPECT_EQ(disk().content, std::nullopt);
}

TEST_F(DesktopQuickCaptureDraftTest, PostsOnlyAfterTheAttemptIsOnTheDisk) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  webView->finishEvaluation(Json::object());
  EXPECT_EQ(network().requests.size(), 1u);
  platform.backgroundQueue().workOnNext();
  ASSERT_TRUE(stored());
  EXPECT_TRUE(stored()->unconfirmed);
  EXPECT_EQ(stored()->attempt->raw, "Note");
  EXPECT_EQ(network().requests.size(), 1u);
  storeDraft();
  ASSERT_EQ(network().requests.size(), 2u);
  EXPECT_EQ(stored()->attempt->body, lastRequest().body);
}

TEST_F(DesktopQuickCaptureDraftTest, PostsAfterTwoSecondsIfTheDiskDoesNotAnswer) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  webView->finishEvaluation(Json::object());
  queue().advance(milliseconds(2000));
  EXPECT_EQ(lastRequest().method, "POST");
}

TEST_F(DesktopQuickCaptureDraftTest, PostsEvenIfTheDiskIsFull) {
  disk().failure = PlatformError{"POSIX", 28, "No space left on device"};
  open("Note");
  submitUntilPost();
  EXPECT_EQ(lastRequest().method, "POST");
  answerConfirmation();
  EXPECT_EQ(editor().text(), "");
}

TEST_F(DesktopQuickCaptureDraftTest, AConfirmedNoteLeavesNoFile) {
  open("Note");
  submitUntilPost();
  answerConfirmation();
  storeDraft();
  EXPECT_EQ(disk().content, std::nullopt);
}

TEST_F(DesktopQuickCaptureDraftTest, RepeatsAnUnconfirmedPostInTheNextProcess) {
  open("  Precious\n");
  submitUntilPost();
  const HttpRequest first = lastRequest();
  restart();
  EXPECT_EQ(editor().text(), "  Precious\n");
  EXPECT_FALSE(editor().isEditable());
  EXPECT_TRUE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().message(), repeatText);
  EXPECT_TRUE(capture->preventsRestart());

  resubmitUntilPost();
  EXPECT_EQ(lastRequest().body, first.body);
  EXPECT_EQ(lastRequest().headers.back(), first.headers.back());
  answerConfirmation();
  storeDraft();
  EXPECT_EQ(editor().text(), "");
  EXPECT_TRUE(editor().isEditable());
  EXPECT_EQ(disk().content, std::nullopt);
}

TEST_F(DesktopQuickCaptureDraftTest, TheNextProcessSendsItOnlyForTheSameAccount) {
  open("Mine");
  submitUntilPost();
  restart();
  capture->show();
  capture->submit();
  answerCookies();
  answerAccount("user-2");
  EXPECT_EQ(panel().message(), changedText);
  EXPECT_FALSE(editor().isEditable());
}

TEST_F(DesktopQuickCaptureDraftTest, ARefusedNoteCanBeEditedInTheNextProcess) {
  open("Dull");
  submitUntilPost();
  network().answer(422, R"({"error": {"message": "Too dull"}})");
  storeDraft();
  restart();
  EXPECT_TRUE(editor().isEditable());
  EXPECT_EQ(panel().message(), hint);
  EXPECT_FALSE(stored()->unconfirmed);
}

TEST_F(DesktopQuickCaptureDraftTest, ADamagedFileIsSetAsideAndReported) {
  disk().content = "{\"version\": 1, \"text\": \"ha";
  restart();
  EXPECT_EQ(editor().text(), "");
  EXPECT_TRUE(editor().isEditable());
  EXPECT_EQ(disk().aside, "{\"version\": 1, \"text\": \"ha");
  EXPECT_THAT(platform.system().logged, testing::SizeIs(1));
}

// The failures that are reported while the panel is hidden.
class HiddenFailureTest : public DesktopQuickCaptureDraftTest {
 protected:
  HiddenFailureTest() { listen(); }
  void listen() {
    capture->onHiddenFailure = [this](const std::string& title, const std::string& text,
                                      std::function<void()> showPanel) {
      EXPECT_EQ(title, "Быстрая запись — Навора");
      told.push_back(text);
      showInstead = std::move(showPanel);
    };
  }
  void failWhileHidden() {
    open("Note");
    capture->submit();
    panel().clickElsewhere();
    answerCookies();
    network().fail(-1);
  }

  std::vector<std::string> told;
  std::function<void()> showInstead;
};

TEST_F(HiddenFailureTest, IsToldIfThePanelWasHiddenMeanwhile) {
  failWhileHidden();
  EXPECT_THAT(told, ElementsAre(offlineText));
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(HiddenFailureTest, IsNotToldWhileThePanelIsVisible) {
  open("Note");
  capture->submit();
  answerCookies();
  network().fail(-1);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(HiddenFailureTest, IsNotToldIfTheLoginPageIsOpened) {
  open("Note");
  capture->submit();
  panel().clickElsewhere();
  answerCookies();
  network().answer(401, "{}");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(HiddenFailureTest, ShowsThePanelWithoutTheKeyboardWhereNotificationsAreOff) {
  failWhileHidden();
  log().take();
  showInstead();
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(panel().message(), offlineText);
  const auto events = log().take();
  EXPECT_THAT(events, testing::Contains("panel.orderFront"));
  EXPECT_THAT(events, testing::Not(testing::Contains("panel.makeKeyAndOrderFront")));
  EXPECT_THAT(events, testing::Not(testing::Contains("editor.makeFirstResponder")));
}

TEST_F(HiddenFailureTest, DoesNotShowThePanelOnceTheUserHasSeenTheFailure) {
  failWhileHidden();
  capture->show();
  capture->hide(true);
  showInstead();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(HiddenFailureTest, DoesNotShowThePanelWhileTheNoteIsSentAgain) {
  failWhileHidden();
  capture->submit();
  showInstead();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(HiddenFailureTest, MayBeAnsweredAfterThePanelIsDestroyed) {
  failWhileHidden();
  capture.reset();
  showInstead();
}

TEST_F(HiddenFailureTest, TheNextProcessTellsOfAnUnconfirmedNote) {
  open("Note");
  submitUntilPost();
  restart();
  listen();
  capture->tellRestoredFailure();
  EXPECT_THAT(told, ElementsAre(repeatText));
  capture->show();
  capture->tellRestoredFailure();
  EXPECT_THAT(told, testing::SizeIs(1));
}

TEST_F(HiddenFailureTest, TheNextProcessTellsNothingOfAnOrdinaryDraft) {
  open("Note");
  capture->flushDraft();
  restart();
  listen();
  capture->tellRestoredFailure();
  EXPECT_THAT(told, IsEmpty());
}

// Steps of a submission that never end by themselves.
class EndlessSubmissionTest : public DesktopQuickCaptureDraftTest {
 protected:
  void expectFailure(const std::string& message) {
    EXPECT_EQ(panel().message(), message);
    EXPECT_TRUE(editor().isEditable());
    EXPECT_TRUE(panel().isSubmitEnabled());
  }
};

TEST_F(EndlessSubmissionTest, AnEngineThatReturnsNoCookiesCountsAsANetworkFailure) {
  open("Note");
  capture->submit();
  queue().advance(milliseconds(1999));
  EXPECT_FALSE(editor().isEditable());
  queue().advance(milliseconds(1));
  expectFailure(offlineText);
}

TEST_F(EndlessSubmissionTest, APageThatDoesNotAnswerChoosesNoModel) {
  open("Note");
  capture->submit();
  answerCookies();
  answerAccount();
  queue().advance(milliseconds(2000));
  storeDraft();
  EXPECT_EQ(lastRequest().body, R"({"raw":"Note"})");
  // A late answer changes nothing.
  webView->finishEvaluation(Json{{"provider", "openai"}});
  EXPECT_EQ(lastRequest().body, R"({"raw":"Note"})");
  answerConfirmation();
  EXPECT_EQ(editor().text(), "");
}

}  // namespace
}  // namespace navora
