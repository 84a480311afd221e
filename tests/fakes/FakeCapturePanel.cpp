#include "fakes/FakeCapturePanel.h"

#include "support/FatalError.h"

namespace navora {

FakeCapturePanel::FakeCapturePanel(EventLog& log, Desktop& desktop, Size contentSize,
                                   CapturePanelDelegate& delegate)
    : log_(log),
      desktop_(desktop),
      delegate_(delegate),
      editor_(log, delegate),
      frame_{0, 0, contentSize.width, contentSize.height} {
  log_.record("panel.make");
  desktop_.panel = this;
}

FakeCapturePanel::~FakeCapturePanel() {
  desktop_.panel = nullptr;
}

void FakeCapturePanel::clickElsewhere() {
  editor_.loseFocus();
  delegate_.panelDidResignKey();
}

void FakeCapturePanel::clickSubmit() {
  if (!submitEnabled_) fatalError("The button is disabled", "FakeCapturePanel", __LINE__);
  delegate_.submitButtonPressed();
}

void FakeCapturePanel::setFrame(const Rectangle& frame) {
  frame_ = frame;
}

void FakeCapturePanel::makeKeyAndOrderFront() {
  log_.record("panel.makeKeyAndOrderFront");
  visible_ = true;
}

void FakeCapturePanel::orderOut() {
  log_.record("panel.orderOut");
  visible_ = false;
}

void FakeCapturePanel::setMessage(const std::string& text) {
  message_ = text;
}

double FakeCapturePanel::messageTextHeight(double width) {
  const int lines = width < desktop_.messageLineWidth ? 2 : 1;
  return lines * desktop_.messageLineHeight;
}

}  // namespace navora
