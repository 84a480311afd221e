#include "app/UpdateGuard.h"

#include <algorithm>
#include <utility>

#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "support/Json.h"
#include "updates/DesktopRestartScript.h"

namespace navora {
namespace {

std::string notChecked() {
  return L("Не удалось проверить незавершённый ввод. Попробуйте обновление ещё раз.");
}

// Parses the result of the page's script, the JSON text of an object; nullopt for anything else.
std::optional<Json> readAnswer(const WebView::EvaluationResult& result) {
  if (!result || !result->is_string()) return std::nullopt;
  auto answer = parseJson(result->get<std::string>());
  if (!answer || !answer->is_object()) return std::nullopt;
  return answer;
}

}  // namespace

UpdateGuard::UpdateGuard(MainQueue& mainQueue, WebView& webView, DesktopQuickCapture& quickCapture,
                         Url origin)
    : mainQueue_(mainQueue),
      webView_(webView),
      quickCapture_(quickCapture),
      origin_(std::move(origin)) {}

void UpdateGuard::prepareForUpdate(Answer answer) {
  const auto url = webView_.url();
  if (quickCapture_.preventsRestart()) {
    answer(
        L("Сохраните быструю запись (⌘⇧Пробел) или дождитесь её отправки, затем продолжите "
          "обновление."));
  } else if (webView_.isLoading()) {
    answer(L("Дождитесь загрузки страницы и продолжите обновление."));
  } else if (!url) {
    prepared();
    answer(std::nullopt);
  } else if (!DesktopOrigin::contains(*url, origin_)) {
    answer(L("Вернитесь в Навору и продолжите обновление."));
  } else {
    askPage(std::move(answer));
  }
}

void UpdateGuard::askPage(Answer answer) {
  const auto script = DesktopRestartScript::prepare(
      L("Завершите редактирование и перезагрузите страницу перед обновлением."));
  if (!script) {
    answer(notChecked());
    return;
  }
  const std::uint64_t number = ++asked_;
  questions_.push_back(
      {.number = number,
       .resumptions = resumptions_,
       .answer = std::move(answer),
       .timeout = mainQueue_.after(patience, [this, number] { pageIsSilent(number); })});
  webView_.evaluateJavaScript(
      *script, lifetime_.guard([this, number](const WebView::EvaluationResult& result) {
        pageAnswered(number, result);
      }));
}

void UpdateGuard::pageAnswered(std::uint64_t number, const WebView::EvaluationResult& result) {
  if (const auto question = close(number)) {
    question->answer(evaluateAnswer(*question, result));
    return;
  }
  // The answer comes after the time-out, but the page may have stopped taking input for it.
  resumePageAfter(number);
}

std::optional<std::string> UpdateGuard::evaluateAnswer(const Question& question,
                                                       const WebView::EvaluationResult& result) {
  const auto answer = readAnswer(result);
  const Json reason = answer ? answer->value("reason", Json()) : Json(false);
  if (reason.is_string()) {
    restartPrepared_ = false;
    return reason.get<std::string>();
  }
  if (!reason.is_null()) {
    // A guard of the page's own may have stopped the input before it failed to answer.
    restartPrepared_ = false;
    resumePageAfter(question.number);
    return notChecked();
  }
  if (question.resumptions != resumptions_) return notChecked();
  if (quickCapture_.preventsRestart()) {
    resumePageAfter(question.number);
    return L("Сначала сохраните быструю запись (⌘⇧Пробел).");
  }
  prepared();
  return std::nullopt;
}

void UpdateGuard::pageIsSilent(std::uint64_t number) {
  const auto question = close(number);
  if (!question) return;
  restartPrepared_ = false;
  question->answer(notChecked());
}

std::optional<UpdateGuard::Question> UpdateGuard::close(std::uint64_t number) {
  const auto found = std::ranges::find(questions_, number, &Question::number);
  if (found == questions_.end()) return std::nullopt;
  Question question = std::move(*found);
  questions_.erase(found);
  return question;
}

void UpdateGuard::prepared() {
  restartPrepared_ = true;
  quickCapture_.hideForRestart();
}

void UpdateGuard::resume() {
  ++resumptions_;
  restartPrepared_ = false;
  resumePage();
}

// The page runs scripts in order: what it was asked later decides whether it takes input, and must
// not be undone.
void UpdateGuard::resumePageAfter(std::uint64_t number) {
  if (number == asked_) resumePage();
}

void UpdateGuard::resumePage() {
  webView_.evaluateJavaScript("window.NavoraUpdateGuard?.resume()");
}

}  // namespace navora
