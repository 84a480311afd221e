#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/MainQueue.h"
#include "platform/MainWindow.h"
#include "platform/WebView.h"
#include "support/Lifetime.h"
#include "support/Url.h"

namespace navora {

// Moves the root page to a destination within it (a URL fragment), or focuses its capture input, as
// soon as the page is ready. While the page renders, a run repeats the attempt up to
// maximumAttempts times; a new run supersedes the previous one.
class CaptureFocus {
 public:
  static constexpr int maximumAttempts = 40;

  // The references must outlive this object.
  CaptureFocus(WebView& webView, MainWindow& window, MainQueue& queue, Url origin);

  // What to do once the page is ready; both are cleared when the page has confirmed it.
  bool capturePending = false;
  std::optional<Url> pendingDestination;

  // Starts a run. It does nothing unless one of the above is set and the service's root page is
  // shown.
  void start();

 private:
  void tryCaptureFocus(int generation);
  void didAnswer(int generation, const WebView::EvaluationResult& result);
  bool showsRootPage() const;
  std::string script() const;

  WebView& webView_;
  MainWindow& window_;
  MainQueue& queue_;
  const Url origin_;
  int generation_ = 0;
  int attempt_ = 0;
  std::unique_ptr<ObserverToken> retry_;
  Lifetime lifetime_;
};

}  // namespace navora
