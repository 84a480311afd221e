#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/UpdateGuard.h"
#include "unit/capture/QuickCaptureTest.h"
#include "updates/DesktopRestartScript.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string noGuardOnThePage =
    "Завершите редактирование и перезагрузите страницу перед обновлением.";
const std::string notChecked =
    "Не удалось проверить незавершённый ввод. Попробуйте обновление ещё раз.";
constexpr const char* resumeGuardScript = "window.NavoraUpdateGuard?.resume()";

// A guard for a capture panel and a page without unsaved input.
class UpdateGuardTest : public QuickCaptureTest {
 protected:
  using Answers = std::vector<std::optional<std::string>>;

  UpdateGuardTest() {
    make();
    guard_ = std::make_unique<UpdateGuard>(queue(), *webView, *capture, testUrl(origin));
    log().take();
  }

  void prepare() {
    guard_->prepareForUpdate(
        [this](std::optional<std::string> message) { answers_.push_back(std::move(message)); });
  }
  // Completes the page's script.
  void pageAnswers(WebView::EvaluationResult result) {
    webView->finishEvaluation(std::move(result));
  }
  void pageIsReady() { pageAnswers(Json("{}")); }
  // Completes the scripts whose result is ignored.
  void finishOtherScripts() {
    while (webView->evaluationsUnderWay() > 0)
      pageAnswers(Json(nullptr));
  }
  std::ptrdiff_t resumptions() { return std::ranges::count(webView->scripts(), resumeGuardScript); }
  Answers takeAnswers() { return std::exchange(answers_, {}); }
  static Answers one(std::optional<std::string> message) { return {std::move(message)}; }
  static Answers success() { return one(std::nullopt); }

  Answers answers_;
  std::unique_ptr<UpdateGuard> guard_;
};

TEST_F(UpdateGuardTest, AsksThePage) {
  prepare();
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_FALSE(guard_->restartPrepared());
  EXPECT_THAT(webView->scripts(), ElementsAre(DesktopRestartScript::prepare(noGuardOnThePage)));
  pageIsReady();
  EXPECT_EQ(takeAnswers(), success());
  EXPECT_TRUE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, AsksWithTheMessageInTheUsersLanguage) {
  locale.setCatalogs(Json{{"en", {{noGuardOnThePage, "Reload \"now\""}}}}.dump());
  locale.prefer({"en"});
  prepare();
  EXPECT_THAT(webView->scripts(), ElementsAre(DesktopRestartScript::prepare("Reload \"now\"")));
}

TEST_F(UpdateGuardTest, TreatsANullReasonAsReady) {
  prepare();
  pageAnswers(Json(R"({"reason": null})"));
  EXPECT_EQ(takeAnswers(), success());
}

TEST_F(UpdateGuardTest, ReturnsThePagesReasonUnchanged) {
  for (const char* reason : {"An open editor", "", " \n", "⌘⇧Пробел"}) {
    prepare();
    pageAnswers(Json(Json{{"reason", reason}}.dump()));
    EXPECT_EQ(takeAnswers(), one(reason));
    EXPECT_FALSE(guard_->restartPrepared());
  }
}

TEST_F(UpdateGuardTest, CancelsAnEarlierPreparationIfThePageHasAReasonNow) {
  prepare();
  pageIsReady();
  prepare();
  pageAnswers(Json(R"({"reason": "An open editor"})"));
  EXPECT_FALSE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, BlocksOnAnUnclearReply) {
  const WebView::EvaluationResult results[] = {
      Unexpected(PlatformError{"WebKit", 4, "The script failed"}),
      Json(nullptr),
      Json(true),
      Json(5),
      Json::object(),
      Json{{"reason", nullptr}},
      Json(""),
      Json("null"),
      Json("[]"),
      Json("\"text\""),
      Json("{"),
      Json("{} {}"),
      Json("{\"reason\": \"\xFF\"}"),
      Json(R"({"reason": true})"),
      Json(R"({"reason": 1})"),
      Json(R"({"reason": {}})"),
      Json(R"({"reason": []})"),
  };
  for (const auto& result : results) {
    prepare();
    pageAnswers(result);
    EXPECT_EQ(takeAnswers(), one(notChecked));
    EXPECT_FALSE(guard_->restartPrepared());
    finishOtherScripts();
  }
}

// A page with a guard of its own may have stopped taking input before it gave such an answer.
TEST_F(UpdateGuardTest, ResumesThePageAfterAnUnclearReply) {
  std::ptrdiff_t count = 0;
  for (const auto& result :
       {WebView::EvaluationResult(Json(R"({"reason": {}})")),
        WebView::EvaluationResult(Json(R"({"reason": 1})")), WebView::EvaluationResult(Json("[]")),
        WebView::EvaluationResult(Unexpected(PlatformError{"WebKit", 4, "The script failed"}))}) {
    prepare();
    pageAnswers(result);
    EXPECT_EQ(takeAnswers(), one(notChecked));
    EXPECT_EQ(webView->scripts().back(), resumeGuardScript);
    EXPECT_EQ(resumptions(), ++count);
    finishOtherScripts();
  }
}

TEST_F(UpdateGuardTest, CancelsAnEarlierPreparationAfterAnUnclearReply) {
  prepare();
  pageIsReady();
  prepare();
  pageAnswers(Json(R"({"reason": {}})"));
  EXPECT_FALSE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, DoesNotResumeAPageThatHasBeenAskedAgain) {
  prepare();
  prepare();
  pageAnswers(Json(R"({"reason": {}})"));
  pageIsReady();
  EXPECT_EQ(takeAnswers(), (Answers{notChecked, std::nullopt}));
  EXPECT_TRUE(guard_->restartPrepared());
  EXPECT_EQ(resumptions(), 0);
}

TEST_F(UpdateGuardTest, BlocksWhenThePageDoesNotAnswer) {
  prepare();
  queue().advance(UpdateGuard::patience - std::chrono::milliseconds(1));
  EXPECT_THAT(answers_, IsEmpty());
  queue().advance(std::chrono::milliseconds(1));
  EXPECT_EQ(takeAnswers(), one(notChecked));
  EXPECT_FALSE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, WaitsNoLongerOnceThePageHasAnswered) {
  prepare();
  pageIsReady();
  takeAnswers();
  queue().advance(2 * UpdateGuard::patience);
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_TRUE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, ResumesAPageThatAnswersTooLate) {
  open();
  prepare();
  queue().advance(UpdateGuard::patience);
  takeAnswers();
  EXPECT_EQ(resumptions(), 0);
  pageIsReady();
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_FALSE(guard_->restartPrepared());
  EXPECT_EQ(resumptions(), 1);
  EXPECT_TRUE(panel().isVisible());
}

// The page runs the scripts in order: a resumption now would undo the second preparation.
TEST_F(UpdateGuardTest, LateReplyDoesNotDisturbANewerQuestion) {
  prepare();
  queue().advance(UpdateGuard::patience);
  EXPECT_EQ(takeAnswers(), one(notChecked));
  prepare();
  pageIsReady();
  EXPECT_THAT(answers_, IsEmpty());
  pageIsReady();
  EXPECT_EQ(takeAnswers(), success());
  EXPECT_TRUE(guard_->restartPrepared());
  EXPECT_EQ(resumptions(), 0);
}

TEST_F(UpdateGuardTest, CancelsAnEarlierPreparationIfThePageIsSilentNow) {
  prepare();
  pageIsReady();
  prepare();
  queue().advance(UpdateGuard::patience);
  EXPECT_FALSE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, BlocksOnADraft) {
  open("A thought");
  prepare();
  EXPECT_EQ(takeAnswers(), one("Сохраните быструю запись (⌘⇧Пробел) или дождитесь её отправки, "
                               "затем продолжите обновление."));
  EXPECT_THAT(webView->scripts(), IsEmpty());
  EXPECT_FALSE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, BlocksOnADraftFirst) {
  open("A thought");
  webView->loading = true;
  webView->setUrl(testUrl("https://elsewhere.example/"));
  prepare();
  EXPECT_THAT(takeAnswers(), ElementsAre(testing::Optional(testing::HasSubstr("быструю запись"))));
}

TEST_F(UpdateGuardTest, BlocksWhileThePageLoads) {
  webView->loading = true;
  for (const auto& url :
       {std::optional(testUrl(origin)), std::optional(testUrl("https://elsewhere.example/")),
        std::optional<Url>()}) {
    webView->setUrl(url);
    prepare();
    EXPECT_EQ(takeAnswers(), one("Дождитесь загрузки страницы и продолжите обновление."));
  }
  EXPECT_THAT(webView->scripts(), IsEmpty());
}

TEST_F(UpdateGuardTest, IsReadyImmediatelyWithoutAPage) {
  webView->setUrl(std::nullopt);
  open();
  prepare();
  EXPECT_EQ(takeAnswers(), success());
  EXPECT_TRUE(guard_->restartPrepared());
  EXPECT_FALSE(panel().isVisible());
  EXPECT_THAT(webView->scripts(), IsEmpty());
}

TEST_F(UpdateGuardTest, DoesNotAskAForeignPage) {
  webView->setUrl(testUrl("https://elsewhere.example/"));
  prepare();
  EXPECT_EQ(takeAnswers(), one("Вернитесь в Навору и продолжите обновление."));
  EXPECT_THAT(webView->scripts(), IsEmpty());
}

TEST_F(UpdateGuardTest, HidesTheCapturePanel) {
  open();
  prepare();
  EXPECT_TRUE(panel().isVisible());
  pageIsReady();
  EXPECT_FALSE(panel().isVisible());
}

TEST_F(UpdateGuardTest, ResumesThePageIfADraftWasStartedMeanwhile) {
  prepare();
  open("A thought");
  pageIsReady();
  EXPECT_EQ(takeAnswers(), one("Сначала сохраните быструю запись (⌘⇧Пробел)."));
  EXPECT_FALSE(guard_->restartPrepared());
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(webView->scripts().back(), resumeGuardScript);
}

TEST_F(UpdateGuardTest, ResumesThePageWhenTheRestartIsCancelled) {
  prepare();
  pageIsReady();
  guard_->resume();
  EXPECT_FALSE(guard_->restartPrepared());
  EXPECT_EQ(webView->scripts().back(), resumeGuardScript);
  EXPECT_EQ(webView->scripts().size(), 2U);
}

// The page runs both scripts in order, so it accepts input again when the reply arrives.
TEST_F(UpdateGuardTest, IgnoresAReplyFromBeforeThePageWasResumed) {
  open();
  prepare();
  guard_->resume();
  pageIsReady();
  EXPECT_EQ(takeAnswers(), one(notChecked));
  EXPECT_FALSE(guard_->restartPrepared());
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(UpdateGuardTest, CanBePreparedAgain) {
  prepare();
  pageIsReady();
  guard_->resume();
  pageAnswers(Json(nullptr));
  takeAnswers();
  prepare();
  pageIsReady();
  EXPECT_EQ(takeAnswers(), success());
  EXPECT_TRUE(guard_->restartPrepared());
}

TEST_F(UpdateGuardTest, DoesNotAnswerAfterItsDestruction) {
  prepare();
  guard_.reset();
  pageIsReady();
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace navora
