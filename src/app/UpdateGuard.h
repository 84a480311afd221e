#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "capture/DesktopQuickCapture.h"
#include "platform/WebView.h"
#include "support/Lifetime.h"
#include "support/Url.h"

namespace navora {

// Ensures that a restart for an update loses no input, neither in the page nor in the capture
// panel. Unless both are known to have nothing unsaved, the application keeps running.
class UpdateGuard {
 public:
  // Called once, on the main thread, with nullopt if the application can restart now, otherwise
  // with a message for the user. Not called if the guard or the web view is destroyed first.
  using Answer = std::function<void(std::optional<std::string> message)>;

  // The references must outlive this object.
  UpdateGuard(WebView& webView, DesktopQuickCapture& quickCapture, Url origin);

  // While true, nothing may change the page or show the capture panel.
  bool restartPrepared() const { return restartPrepared_; }

  // Asks the page and the capture panel for unsaved input. If there is none, the page accepts no
  // input until resume().
  void prepareForUpdate(Answer answer);
  // Cancels a prepared restart and lets the user continue.
  void resume();

 private:
  void askPage(Answer answer);
  std::optional<std::string> pageAnswered(const WebView::EvaluationResult& result,
                                          std::uint64_t resumptions);
  void prepared();
  void resumePage();

  WebView& webView_;
  DesktopQuickCapture& quickCapture_;
  const Url origin_;
  bool restartPrepared_ = false;
  // Incremented by resume(), to discard replies of the page to earlier questions.
  std::uint64_t resumptions_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
