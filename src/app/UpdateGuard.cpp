#include "app/UpdateGuard.h"

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

UpdateGuard::UpdateGuard(WebView& webView, DesktopQuickCapture& quickCapture, Url origin)
    : webView_(webView), quickCapture_(quickCapture), origin_(std::move(origin)) {}

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
  webView_.evaluateJavaScript(
      *script, lifetime_.guard([this, answer = std::move(answer), resumptions = resumptions_](
                                   const WebView::EvaluationResult& result) {
        answer(pageAnswered(result, resumptions));
      }));
}

std::optional<std::string> UpdateGuard::pageAnswered(const WebView::EvaluationResult& result,
                                                     std::uint64_t resumptions) {
  const auto answer = readAnswer(result);
  if (!answer) return notChecked();
  const auto reason = answer->find("reason");
  if (reason != answer->end() && reason->is_string()) {
    restartPrepared_ = false;
    return reason->get<std::string>();
  }
  const bool isReady = reason == answer->end() || reason->is_null();
  if (!isReady || resumptions != resumptions_) return notChecked();
  if (quickCapture_.preventsRestart()) {
    resumePage();
    return L("Сначала сохраните быструю запись (⌘⇧Пробел).");
  }
  prepared();
  return std::nullopt;
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

void UpdateGuard::resumePage() {
  webView_.evaluateJavaScript("window.NavoraUpdateGuard?.resume()");
}

}  // namespace navora
