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

// Sees to it that a restart for an update loses nothing that the user has typed, neither in the
// page nor in the quick capture. An answer that is not clear keeps the application running.
class UpdateGuard {
 public:
  // Called once, on the main thread: with none if the application may be restarted now, otherwise
  // with what to tell the user. Not called at all if the guard or the web view ends first.
  using Answer = std::function<void(std::optional<std::string> message)>;

  // All must outlive this object.
  UpdateGuard(WebView& webView, DesktopQuickCapture& quickCapture, Url origin);

  // While this is true, nothing may change the page or open the quick capture.
  bool restartPrepared() const { return restartPrepared_; }

  // On success, the page takes no input until `resume`.
  void prepareForUpdate(Answer answer);
  // The restart does not come after all: the user may go on.
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
  // Counts the calls of `resume`: one that comes while the page is being asked undoes what the page
  // will have answered.
  std::uint64_t resumptions_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
