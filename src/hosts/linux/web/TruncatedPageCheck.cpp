#include "hosts/linux/web/TruncatedPageCheck.h"

#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

#include "hosts/linux/web/ScriptWorld.h"

namespace navora {
namespace {

constexpr int connectionLostCode = -1005;

// Compressed size in bytes, which Content-Length states too.
constexpr std::string_view receivedBytes =
    "performance.getEntriesByType('navigation')[0]?.encodedBodySize ?? 0";

double contentLength(WebKitWebView* view) {
  WebKitWebResource* page = webkit_web_view_get_main_resource(view);
  WebKitURIResponse* response = page == nullptr ? nullptr : webkit_web_resource_get_response(page);
  if (response == nullptr) return 0;
  return static_cast<double>(webkit_uri_response_get_content_length(response));
}

struct PendingCheck {
  double contentLength;
  TruncatedPageCheck::Report report;
};

void onEvaluated(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<PendingCheck> check(static_cast<PendingCheck*>(data));
  const auto value = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
  // Cancelled, or the page was replaced.
  if (!value) return;
  const double received = jsc_value_to_double(value.get());
  // The size is 0 for a page from the cache.
  if (received <= 0 || received >= check->contentLength) return;
  check->report(connectionLost());
}

}  // namespace

PlatformError connectionLost() {
  return {"Navora", connectionLostCode, g_strerror(ECONNRESET)};
}

void TruncatedPageCheck::check(WebKitWebView* view, Report report) {
  cancel();
  const double length = contentLength(view);
  if (length <= 0) return;
  pending_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  // In the isolated world, where the page cannot replace `performance`.
  webkit_web_view_evaluate_javascript(
      view, receivedBytes.data(), static_cast<gssize>(receivedBytes.size()), isolatedScriptWorld,
      nullptr, pending_.get(), onEvaluated, new PendingCheck{length, std::move(report)});
}

void TruncatedPageCheck::cancel() {
  if (pending_) g_cancellable_cancel(pending_.get());
  pending_ = {};
}

}  // namespace navora
