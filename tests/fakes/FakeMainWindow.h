#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fakes/EventLog.h"
#include "platform/MainWindow.h"
#include "platform/WebView.h"

namespace navora {

class FakeErrorView;

// Counts the requests to close a window, and refuses them unless `allowsClose` is set.
class FakeMainWindowDelegate final : public MainWindowDelegate {
 public:
  bool windowShouldClose() override {
    ++closeRequests;
    return allowsClose;
  }

  int closeRequests = 0;
  bool allowsClose = false;
};

class FakeMainWindow final : public MainWindow {
 public:
  // The views above the content, the topmost last. Shared with them, because they may outlive the
  // window.
  using Overlays = std::vector<FakeErrorView*>;

  FakeMainWindow(EventLog& log, MainWindowDescription description, MainWindowDelegate& delegate);

  const MainWindowDescription& description() const { return description_; }
  const std::string& title() const { return title_; }
  const std::shared_ptr<WebView>& contentView() const { return contentView_; }
  bool isVisible() const { return visible_; }
  WindowAppearance appearance() const { return appearance_; }
  const std::shared_ptr<Overlays>& overlays() const { return overlays_; }

  // Act as the user. A miniaturized window is not visible.
  void clickClose();
  void miniaturize();

  void setTitle(const std::string& title) override;
  void setContentView(std::shared_ptr<WebView> webView) override;
  void makeContentViewFirstResponder() override;
  void setAppearance(WindowAppearance appearance) override;
  bool isMiniaturized() const override { return miniaturized_; }
  void deminiaturize() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;

 private:
  EventLog& log_;
  MainWindowDescription description_;
  MainWindowDelegate& delegate_;
  std::string title_;
  std::shared_ptr<WebView> contentView_;
  WindowAppearance appearance_ = WindowAppearance::system;
  bool visible_ = false;
  bool miniaturized_ = false;
  std::shared_ptr<Overlays> overlays_ = std::make_shared<Overlays>();
};

}  // namespace navora
