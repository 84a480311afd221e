#include "app/CaptureFocus.h"

#include <chrono>
#include <limits>
#include <utility>

#include "origin/DesktopOrigin.h"
#include "support/FatalError.h"
#include "support/Json.h"

namespace navora {
namespace {

constexpr std::chrono::milliseconds retryInterval{250};

constexpr const char* inputScript = R"((() => {
  location.hash = '#today';
  const input = document.querySelector('#capture-input');
  if (!input || !input.isContentEditable || input.getClientRects().length === 0) return false;
  input.focus(); return document.activeElement === input;
})())";

void increment(int& counter, int line) {
  if (counter == std::numeric_limits<int>::max()) fatalError("A counter overflowed", "App", line);
  ++counter;
}

std::string destinationScript(const std::string& fragment) {
  return "(() => {\n  if (!document.querySelector('#capture-input')) return false;\n"
         "  location.hash = [" +
         jsonStringLiteral(fragment) + "][0]; return true;\n})()";
}

}  // namespace

CaptureFocus::CaptureFocus(WebView& webView, MainWindow& window, MainQueue& queue, Url origin)
    : webView_(webView), window_(window), queue_(queue), origin_(std::move(origin)) {}

void CaptureFocus::start() {
  increment(generation_, __LINE__);
  attempt_ = 0;
  tryCaptureFocus(generation_);
}

void CaptureFocus::tryCaptureFocus(int generation) {
  if (!capturePending && !pendingDestination) return;
  if (generation != generation_) return;
  if (!showsRootPage()) return;
  increment(attempt_, __LINE__);
  webView_.evaluateJavaScript(
      script(), lifetime_.guard([this, generation](const WebView::EvaluationResult& result) {
        didAnswer(generation, result);
      }));
}

void CaptureFocus::didAnswer(int generation, const WebView::EvaluationResult& result) {
  if (generation != generation_) return;
  if (result && *result == Json(true)) {
    capturePending = false;
    pendingDestination.reset();
    window_.makeContentViewFirstResponder();
  } else if (attempt_ < maximumAttempts) {
    retry_ = queue_.after(retryInterval, [this, generation] { tryCaptureFocus(generation); });
  }
}

bool CaptureFocus::showsRootPage() const {
  const auto url = webView_.url();
  return url && DesktopOrigin::contains(*url, origin_) && url->path() == "/";
}

std::string CaptureFocus::script() const {
  if (!pendingDestination) return inputScript;
  return destinationScript(pendingDestination->fragment().value_or("today"));
}

}  // namespace navora
