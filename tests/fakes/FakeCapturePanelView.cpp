#include "fakes/FakeCapturePanelView.h"

#include "support/FatalError.h"

namespace navora {

FakeCapturePanelView::FakeCapturePanelView(EventLog& log, Desktop& desktop, Size contentSize,
                                           CapturePanelDelegate& delegate)
    : log_(log),
      desktop_(desktop),
      delegate_(delegate),
      editor_(log, delegate),
      frame_{0, 0, contentSize.width, contentSize.height} {
  log_.record("panel.make");
  desktop_.panel = this;
}

FakeCapturePanelView::~FakeCapturePanelView() {
  desktop_.panel = nullptr;
}

void FakeCapturePanelView::clickElsewhere() {
  key_ = false;
  editor_.loseFocus();
  delegate_.panelDidResignKey();
}

void FakeCapturePanelView::clickInEditor() {
  if (!visible_) fatalError("The panel is hidden", "FakeCapturePanelView", __LINE__);
  key_ = true;
  editor_.makeFirstResponder();
}

void FakeCapturePanelView::clickSubmit() {
  if (!submitEnabled_) fatalError("The button is disabled", "FakeCapturePanelView", __LINE__);
  delegate_.submitButtonPressed();
}

void FakeCapturePanelView::setFrame(const Rectangle& frame) {
  frame_ = frame;
}

void FakeCapturePanelView::makeKeyAndOrderFront() {
  log_.record("panel.makeKeyAndOrderFront");
  visible_ = true;
  key_ = true;
}

void FakeCapturePanelView::orderFront() {
  log_.record("panel.orderFront");
  visible_ = true;
}

void FakeCapturePanelView::orderOut() {
  log_.record("panel.orderOut");
  visible_ = false;
  key_ = false;
}

void FakeCapturePanelView::setMessage(const std::string& text) {
  message_ = text;
}

double FakeCapturePanelView::messageTextHeight(double width) {
  const int lines = width < desktop_.messageLineWidth ? 2 : 1;
  return lines * desktop_.messageLineHeight;
}

}  // namespace navora
