#include "capture/DesktopQuickCapture.h"

#include <utility>

#include "capture/CapturePanelGeometry.h"
#include "capture/CaptureTexts.h"
#include "capture/QuickCapturePolicy.h"
#include "support/Text.h"

namespace navora {

DesktopQuickCapture::DesktopQuickCapture(const Dependencies& dependencies,
                                         std::weak_ptr<WebView> webView, const Url& origin)
    : system_(dependencies.system),
      userDefaults_(dependencies.userDefaults),
      workspace_(dependencies.workspace),
      client_(dependencies.mainQueue, dependencies.system, dependencies.makeHttpSession, webView,
              origin),
      submission_(client_, dependencies.mainQueue, dependencies.system, std::move(webView), origin),
      telemetry_(client_, dependencies.mainQueue, dependencies.system),
      keptDraft_({.backgroundQueue = dependencies.backgroundQueue,
                  .mainQueue = dependencies.mainQueue,
                  .system = dependencies.system,
                  .file = dependencies.draftFile,
                  .current = [this] { return currentDraft(); }}),
      palette_(surface_.palette),
      messageText_(CaptureTexts::hint),
      panel_(dependencies.makePanel(CapturePanelGeometry::initialSize, *this)) {
  telemetry_.attemptFlowId = [this]() -> std::optional<std::string> {
    if (!submission_.attempt()) return std::nullopt;
    return submission_.attempt()->flowId;
  };
  submission_.storeAttempt = [this] { return keptDraft_.storeAndWait(); };
  restoreDraft();
  restoreAppearance();
  refreshLocale();
}

DesktopQuickCapture::~DesktopQuickCapture() = default;

CaptureDraft DesktopQuickCapture::currentDraft() const {
  return {panel_->editor().text(), submission_.attempt(), submission_.isUnconfirmed()};
}

void DesktopQuickCapture::restoreDraft() {
  CaptureDraft draft = keptDraft_.restore();
  if (draft.attempt) telemetry_.continueFlow(draft.attempt->flowId);
  submission_.restore(std::move(draft.attempt), draft.unconfirmed);
  if (!draft.text.empty()) panel_->editor().setText(draft.text);
  panel_->editor().setEditable(!draft.unconfirmed);
  showStateOf(trimmedText());
  if (!draft.unconfirmed) return;
  messageText_ = CaptureTexts::failure(CaptureError::network(), draft.unconfirmed);
  failureIsUnseen_ = true;
}

void DesktopQuickCapture::flushDraft() {
  panel_->editor().commitComposition();
  keptDraft_.flush();
}

void DesktopQuickCapture::show() {
  failureIsUnseen_ = false;
  refreshLocale();
  if (panel_->isVisible()) {
    panel_->makeKeyAndOrderFront();
    panel_->editor().makeFirstResponder();
    return;
  }
  prepareToShow();
  panel_->makeKeyAndOrderFront();
  panel_->editor().makeFirstResponder();
  panel_->editor().moveCaretToEnd();
}

void DesktopQuickCapture::prepareToShow() {
  if (telemetry_.inputCount() == 0 && panel_->editor().text().empty() && !submission_.attempt()) {
    telemetry_.restartClock();
  }
  telemetry_.record("native_opened");
  previousApplication_ = workspace_.frontmostApplication();
  place();
  updateLayout();
}

void DesktopQuickCapture::place() {
  const auto screen = CapturePanelGeometry::screen(workspace_.screens(), workspace_.mainScreen(),
                                                   workspace_.mouseLocation());
  if (screen) panel_->setFrame(CapturePanelGeometry::openingFrame(screen->visibleFrame));
}

void DesktopQuickCapture::hide(bool restoreFocus) {
  if (!panel_->isVisible()) {
    panel_->orderOut();
    return;
  }
  panel_->editor().commitComposition();
  const std::string draft = panel_->editor().text();
  if (!busy_ && !draft.empty()) {
    telemetry_.record("native_abandoned", {{"inputChars", reportedLength(draft)}});
  }
  panel_->orderOut();
  if (restoreFocus && previousApplication_ && !previousApplication_->isTerminated()) {
    previousApplication_->activate();
  }
}

bool DesktopQuickCapture::preventsRestart() {
  panel_->editor().commitComposition();
  return busy_ || submission_.isUnconfirmed() || !trimmedText().empty();
}

void DesktopQuickCapture::hideForRestart() {
  panel_->orderOut();
}

void DesktopQuickCapture::refreshLocale() {
  panel_->setTitle(CaptureTexts::title());
  panel_->editor().setAccessibilityLabel(CaptureTexts::editorLabel());
  refreshPlaceholder();
  panel_->setSubmitToolTip(CaptureTexts::submitToolTip());
  panel_->setSubmitAccessibilityLabel(CaptureTexts::submitLabel());
  panel_->setMessage(messageText_());
  updateLayout();
}

void DesktopQuickCapture::setMessage(CaptureMessage message) {
  messageText_ = std::move(message);
  panel_->setMessage(messageText_());
}

bool DesktopQuickCapture::editorKeyDown(const KeyEvent& event, bool composing) {
  if (!composing && event.keyCode == KeyEvent::escapeKey) {
    hide(true);
    return true;
  }
  return editorKeyEquivalent(event, composing);
}

bool DesktopQuickCapture::editorKeyEquivalent(const KeyEvent& event, bool composing) {
  if (!QuickCapturePolicy::shouldSubmit(event.keyCode, event.modifiers, composing)) return false;
  submit();
  return true;
}

void DesktopQuickCapture::editorTextDidChange() {
  const std::string text = trimmedText();
  telemetry_.record("native_input", {{"inputChars", reportedLength(text)},
                                     {"inputCount", telemetry_.countInput()}});
  if (text.empty() && !submission_.isUnconfirmed()) submission_.forgetAttempt();
  keptDraft_.draftDidChange();
  showStateOf(text);
  updateLayout();
}

void DesktopQuickCapture::showStateOf(const std::string& text) {
  const bool valid = QuickCapturePolicy::validText(text);
  setSubmitEnabled(!busy_ && valid);
  if (!valid && !text.empty()) {
    setMessage(CaptureTexts::tooLong);
  } else if (!busy_ && !submission_.isUnconfirmed()) {
    setMessage(CaptureTexts::hint);
  }
}

void DesktopQuickCapture::editorDidChangeFocus(bool focused) {
  surface_.focused = focused;
  panel_->redrawSurface();
}

void DesktopQuickCapture::panelDidResignKey() {
  hide(false);
}

void DesktopQuickCapture::submitButtonPressed() {
  // The button is disabled during the submission and would lose the keyboard focus to no view.
  panel_->editor().makeFirstResponder();
  submit();
}

std::string DesktopQuickCapture::trimmedText() const {
  return trimmed(panel_->editor().text());
}

void DesktopQuickCapture::setSubmitEnabled(bool enabled) {
  panel_->setSubmitEnabled(enabled);
  if (std::exchange(submitButton_.enabled, enabled) == enabled) return;
  panel_->redrawSubmitButton();
}

void DesktopQuickCapture::updateLayout() {
  CapturePanelLayout layout{.padding = palette_.padding};
  const double largest = CapturePanelGeometry::largestEditorHeight(panel_->screenVisibleFrame());
  layout.editorHeight = CapturePanelGeometry::editorHeight(panel_->editor().textHeight(largest),
                                                           palette_.fontSize, largest);
  const Rectangle frame = panel_->frame();
  const double messageWidth = CapturePanelGeometry::messageWidth(frame.width, palette_.padding);
  layout.messageHeight =
      CapturePanelGeometry::messageHeight(panel_->messageTextHeight(messageWidth));
  const Rectangle wanted = CapturePanelGeometry::withHeight(
      frame,
      CapturePanelGeometry::panelHeight(layout.editorHeight, layout.messageHeight, layout.padding));
  // Most keys change nothing, and laying out and redrawing costs more than the key.
  if (std::exchange(layout_, layout) == layout && wanted == frame) return;
  panel_->setLayout(layout);
  panel_->setFrame(wanted);
  panel_->redrawSurface();
}

}  // namespace navora
