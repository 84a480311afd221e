#include "fakes/FakeMainWindow.h"

#include <utility>

namespace navora {

FakeMainWindow::FakeMainWindow(EventLog& log, MainWindowDescription description,
                               MainWindowDelegate& delegate)
    : log_(log),
      description_(std::move(description)),
      delegate_(delegate),
      title_(description_.title) {
  log_.record("window.make");
}

void FakeMainWindow::clickClose() {
  if (delegate_.windowShouldClose()) {
    log_.record("window.close");
    visible_ = false;
  }
}

void FakeMainWindow::miniaturize() {
  miniaturized_ = true;
  visible_ = false;
}

void FakeMainWindow::setTitle(const std::string& title) {
  log_.record("window.setTitle " + title);
  title_ = title;
}

void FakeMainWindow::setContentView(std::shared_ptr<WebView> webView) {
  log_.record("window.setContentView");
  contentView_ = std::move(webView);
}

void FakeMainWindow::makeContentViewFirstResponder() {
  log_.record("window.makeContentViewFirstResponder");
}

void FakeMainWindow::setAppearance(WindowAppearance appearance) {
  log_.record("window.setAppearance");
  appearance_ = appearance;
}

void FakeMainWindow::deminiaturize() {
  log_.record("window.deminiaturize");
  miniaturized_ = false;
  visible_ = true;
}

void FakeMainWindow::makeKeyAndOrderFront() {
  log_.record("window.makeKeyAndOrderFront");
  if (!miniaturized_) visible_ = true;
}

void FakeMainWindow::orderOut() {
  log_.record("window.orderOut");
  visible_ = false;
}

}  // namespace navora
