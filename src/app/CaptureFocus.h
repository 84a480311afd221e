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

// Leads the page to a place within itself as soon as the page is ready for that: to a destination,
// or to its own capture input. Asks again and again while the page renders, in runs: a newer run
// ends the older one.
class CaptureFocus {
 public:
  static constexpr int maximumAttempts = 40;

  // All must outlive this object.
  CaptureFocus(WebView& webView, MainWindow& window, MainQueue& queue, Url origin);

  // Wanted once the page is ready; a run clears them when the page has confirmed.
  bool capturePending = false;
  std::optional<Url> pendingDestination;

  // Begins a run, if anything is wanted and the service's root page is shown.
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
