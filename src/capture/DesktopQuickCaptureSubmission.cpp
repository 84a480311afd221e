// Sending a note, as the panel presents it: the busy state, the result and the login in between.
#include <string>
#include <utility>

#include "capture/CaptureTexts.h"
#include "capture/DesktopQuickCapture.h"
#include "capture/QuickCapturePolicy.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr double busyOpacity = 0.65;

const char* reasonOf(CaptureError::Kind kind) {
  switch (kind) {
    case CaptureError::Kind::message:
      return "unconfirmed";
    case CaptureError::Kind::login:
      return "login";
    case CaptureError::Kind::changedAccount:
      return "account_changed";
    case CaptureError::Kind::network:
      break;
  }
  return "network";
}

}  // namespace

void DesktopQuickCapture::submit() {
  panel_->editor().commitComposition();
  const std::string text = trimmedText();
  if (busy_ || !QuickCapturePolicy::validText(text)) return;
  if (!submission_.maySend(text)) {
    setMessage(CaptureTexts::unconfirmedText);
    updateLayout();
    return;
  }
  failureIsUnseen_ = false;
  beginBusy();
  debug("Sending a note of " + std::to_string(utf16Length(text)) + " UTF-16 units");
  telemetry_.record("native_submit", {{"inputChars", reportedLength(text)},
                                      {"durationMs", telemetry_.millisecondsSinceStart()}});
  sending_ = send(text);
}

void DesktopQuickCapture::beginBusy() {
  busy_ = true;
  panel_->editor().setEditable(false);
  setSubmitEnabled(false);
  panel_->setSubmitOpacity(busyOpacity);
  setMessage(CaptureTexts::saving);
  updateLayout();
}

void DesktopQuickCapture::endBusy() {
  busy_ = false;
  // A note that may have been stored stays frozen: only the same text can be sent again.
  panel_->editor().setEditable(!submission_.isUnconfirmed());
  setSubmitEnabled(QuickCapturePolicy::validText(trimmedText()));
  panel_->setSubmitOpacity(1);
  updateLayout();
}

Task<> DesktopQuickCapture::send(std::string text) {
  CaptureClient::Trace trace{telemetry_.sessionId(), telemetry_.flowId()};
  const auto result = co_await submission_.send(std::move(text), std::move(trace));
  if (result) {
    noteAccepted(*result);
  } else {
    noteFailed(result.error());
  }
  endBusy();
}

void DesktopQuickCapture::noteAccepted(const QuickCapturePolicy::Receipt& receipt) {
  debug("The service has stored the note as capture " + receipt.captureId);
  telemetry_.record("native_accepted",
                    {{"captureId", receipt.captureId}, {"jobId", receipt.jobId}});
  panel_->editor().clear();
  keptDraft_.store();
  telemetry_.startNewFlow();
  setMessage(CaptureTexts::hint);
  hide(true);
}

void DesktopQuickCapture::noteFailed(const CaptureError& error) {
  debug(std::string("The note is not confirmed: ") + reasonOf(error.kind));
  telemetry_.record("native_failed", {{"reason", reasonOf(error.kind)}});
  keptDraft_.store();
  setMessage(CaptureTexts::failure(error, submission_.isUnconfirmed()));
  if (error.kind == CaptureError::Kind::login) {
    awaitingLogin_ = true;
    hide(false);
    if (onLogin) onLogin();
  } else if (!panel_->isVisible()) {
    failureIsUnseen_ = true;
    tellHiddenFailure();
  }
}

void DesktopQuickCapture::tellRestoredFailure() {
  if (failureIsUnseen_) tellHiddenFailure();
}

void DesktopQuickCapture::tellHiddenFailure() {
  if (!onHiddenFailure) return;
  onHiddenFailure(CaptureTexts::title(), messageText_(),
                  lifetime_.guard([this] { showUnseenFailure(); }));
}

// The user may have opened the panel or sent the note again in the meantime.
void DesktopQuickCapture::showUnseenFailure() {
  if (!failureIsUnseen_ || panel_->isVisible()) return;
  prepareToShow();
  panel_->orderFront();
}

void DesktopQuickCapture::debug(const std::string& line) const {
  system_.debug(DebugArea::capture, line);
}

void DesktopQuickCapture::resumeAfterLogin() {
  if (!awaitingLogin_) return;
  awaitingLogin_ = false;
  setMessage(CaptureTexts::loginDone);
  show();
}

}  // namespace navora
