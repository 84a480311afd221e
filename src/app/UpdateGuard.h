#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "capture/DesktopQuickCapture.h"
#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"
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

  // How long the page may take to answer.
  static constexpr std::chrono::seconds patience{5};

  // The references must outlive this object.
  UpdateGuard(MainQueue& mainQueue, WebView& webView, DesktopQuickCapture& quickCapture,
              Url origin);

  // While true, nothing may change the page or show the capture panel.
  bool restartPrepared() const { return restartPrepared_; }

  // Asks the page and the capture panel for unsaved input. If there is none, the page accepts no
  // input until resume(). A page that has not answered after `patience` counts as one that could
  // not be asked.
  void prepareForUpdate(Answer answer);
  // Cancels a prepared restart and lets the user continue.
  void resume();

 private:
  // A question that the page has not answered yet.
  struct Question {
    std::uint64_t number = 0;
    std::uint64_t resumptions = 0;
    Answer answer;
    std::unique_ptr<ObserverToken> timeout;
  };

  void askPage(Answer answer);
  void pageAnswered(std::uint64_t number, const WebView::EvaluationResult& result);
  std::optional<std::string> evaluateAnswer(const Question& question,
                                            const WebView::EvaluationResult& result);
  void pageIsSilent(std::uint64_t number);
  // Returns the open question with this number, and closes it; nullopt if it is not open.
  std::optional<Question> close(std::uint64_t number);
  void prepared();
  // Resumes the page unless it has been asked again since this question.
  void resumePageAfter(std::uint64_t number);
  void resumePage();

  MainQueue& mainQueue_;
  WebView& webView_;
  DesktopQuickCapture& quickCapture_;
  const Url origin_;
  bool restartPrepared_ = false;
  // Incremented by resume(), to discard replies of the page to earlier questions.
  std::uint64_t resumptions_ = 0;
  // The questions that have neither been answered nor timed out, by age.
  std::vector<Question> questions_;
  // The number of the latest question.
  std::uint64_t asked_ = 0;
  Lifetime lifetime_;
};

}  // namespace navora
