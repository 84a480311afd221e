#include "hosts/linux/web/TruncatedPageCheck.h"

#include <memory>
#include <string_view>
#include <utility>

#include "hosts/linux/web/ScriptWorld.h"

namespace navora {
namespace {

constexpr int connectionLostCode = -1005;

// Bytes on the wire, before decompression, as the promised length counts them.
constexpr std::string_view receivedBytes =
    "performance.getEntriesByType('navigation')[0]?.encodedBodySize ?? 0";

double promisedLength(WebKitWebView* view) {
  WebKitWebResource* page = webkit_web_view_get_main_resource(view);
  WebKitURIResponse* response = page == nullptr ? nullptr : webkit_web_resource_get_response(page);
  if (response == nullptr) return 0;
  return static_cast<double>(webkit_uri_response_get_content_length(response));
}

struct Question {
  double promised;
  TruncatedPageCheck::Report report;
};

void onAnswer(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Question> question(static_cast<Question*>(data));
  const auto value = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
  // Cancelled, or another page is shown by now.
  if (!value) return;
  const double received = jsc_value_to_double(value.get());
  // The engine counts nothing for pages from a cache.
  if (received <= 0 || received >= question->promised) return;
  question->report({"Navora", connectionLostCode, "The connection was lost"});
}

}  // namespace

void TruncatedPageCheck::check(WebKitWebView* view, Report report) {
  cancel();
  const double promised = promisedLength(view);
  if (promised <= 0) return;
  pending_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  // In the application's own script world: the page cannot change the answer.
  webkit_web_view_evaluate_javascript(
      view, receivedBytes.data(), static_cast<gssize>(receivedBytes.size()), isolatedScriptWorld,
      nullptr, pending_.get(), onAnswer, new Question{promised, std::move(report)});
}

void TruncatedPageCheck::cancel() {
  if (pending_) g_cancellable_cancel(pending_.get());
  pending_ = {};
}

}  // namespace navora
