#include "capture/CaptureSubmission.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "platform/TimeLimit.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr const char* modelScript = R"((() => {
  const provider = document.querySelector('#ai-provider');
  const model = document.querySelector('#ai-model');
  const result = {};
  if (provider?.options.length) {
    result.provider = provider.value || 'fallback';
    if (['openrouter','openai','gemini'].includes(result.provider) && model?.value) result.model = model.value;
  }
  return result;
})())";

// A page that shows a dialog or runs a long script does not answer.
constexpr std::chrono::seconds longestModelWait{2};

bool isObjectOfStrings(const Json& value) {
  return value.is_object() &&
         std::ranges::all_of(value, [](const Json& member) { return member.is_string(); });
}

bool isRefusal(int status) {
  return status >= 400 && status <= 499 && status != 409;
}

CaptureError unconfirmedBy(const Json& reply) {
  const Json* error = objectMember(reply, "error");
  if (const auto text = error ? stringMember(*error, "message") : std::nullopt) {
    return CaptureError::message([text = *text] { return text; });
  }
  return CaptureError::message(
      [] { return L("Сервер не подтвердил сохранение. Черновик остался здесь."); });
}

}  // namespace

CaptureSubmission::CaptureSubmission(CaptureClient& client, MainQueue& mainQueue,
                                     const System& system, std::weak_ptr<WebView> webView,
                                     Url origin)
    : client_(client),
      mainQueue_(mainQueue),
      system_(system),
      webView_(std::move(webView)),
      origin_(std::move(origin)) {}

void CaptureSubmission::restore(std::optional<CaptureAttempt> attempt, bool unconfirmed) {
  attempt_ = std::move(attempt);
  unconfirmed_ = unconfirmed;
}

bool CaptureSubmission::maySend(const std::string& text) const {
  return !unconfirmed_ || (attempt_ && attempt_->raw == text);
}

Task<CaptureSubmission::Result> CaptureSubmission::send(std::string text,
                                                        CaptureClient::Trace trace) {
  const bool wasUnconfirmed = unconfirmed_;
  const auto cookie = co_await client_.cookieHeader();
  if (!cookie) co_return Unexpected(cookie.error());
  const auto account = co_await signedInAccount(*cookie, trace);
  if (!account) co_return Unexpected(account.error());
  if (attempt_ && attempt_->account != *account) {
    co_return Unexpected(CaptureError::changedAccount());
  }
  if (!attempt_ || attempt_->raw != text) {
    auto made = co_await makeAttempt(text, *account, trace.flowId);
    if (!made) co_return Unexpected(CaptureError::network());
    attempt_ = std::move(made);
  }
  // From here on the service may have stored the note, even if no reply arrives.
  unconfirmed_ = true;
  co_await storeAttempt();
  const auto reply = co_await client_.post("/api/captures", *cookie, trace.sessionId, *attempt_);
  if (!reply) co_return Unexpected(reply.error());
  co_return evaluateReply(*reply, wasUnconfirmed);
}

Task<Expected<std::string, CaptureError>> CaptureSubmission::signedInAccount(
    std::string cookie, CaptureClient::Trace trace) {
  const auto reply = co_await client_.get("/api/auth/me", std::move(cookie), std::move(trace));
  if (!reply) co_return Unexpected(reply.error());
  const Json* user = reply->status == 200 ? objectMember(reply->body, "user") : nullptr;
  auto id = user ? stringMember(*user, "id") : std::nullopt;
  if (!id || id->empty()) co_return Unexpected(CaptureError::login());
  co_return *std::move(id);
}

Task<std::optional<CaptureAttempt>> CaptureSubmission::makeAttempt(std::string text,
                                                                   std::string account,
                                                                   std::string flowId) {
  Json body;
  body["raw"] = text;
  const Json model = co_await chosenModel();
  for (const char* key : {"provider", "model"}) {
    if (const auto value = stringMember(model, key)) body[key] = *value;
  }
  if (!isValidUtf8(text)) co_return std::nullopt;
  CaptureAttempt attempt;
  attempt.raw = std::move(text);
  attempt.key = "mac-" + uppercasedAscii(system_.randomUuid());
  attempt.account = std::move(account);
  // The page's choice of a model may hold invalid UTF-8, which must not make the note unsendable.
  attempt.body = body.dump(-1, ' ', false, Json::error_handler_t::replace);
  attempt.flowId = std::move(flowId);
  co_return attempt;
}

Task<Json> CaptureSubmission::chosenModel() {
  const auto webView = webView_.lock();
  const auto url = webView ? webView->url() : std::nullopt;
  if (!url || !DesktopOrigin::contains(*url, origin_)) co_return Json::object();
  const auto result = co_await awaitWithin<WebView::EvaluationResult>(
      mainQueue_, longestModelWait, [&webView](Callback<WebView::EvaluationResult> done) {
        webView->evaluateJavaScript(modelScript, std::move(done));
      });
  if (!result || !*result || !isObjectOfStrings(**result)) co_return Json::object();
  co_return **result;
}

CaptureSubmission::Result CaptureSubmission::evaluateReply(const CaptureClient::Reply& reply,
                                                           bool wasUnconfirmed) {
  if (!wasUnconfirmed && isRefusal(reply.status)) {
    // The service stores nothing of a note that it refuses on the first attempt.
    unconfirmed_ = false;
    return Unexpected(unconfirmedBy(reply.body));
  }
  auto receipt =
      reply.status == 202 ? QuickCapturePolicy::readReceipt(reply.body, origin_) : std::nullopt;
  if (!receipt) return Unexpected(unconfirmedBy(reply.body));
  attempt_.reset();
  unconfirmed_ = false;
  return *std::move(receipt);
}

}  // namespace navora
