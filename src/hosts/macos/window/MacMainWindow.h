#pragma once

#import <AppKit/AppKit.h>

#include "platform/MainWindow.h"

@class NavoraWindowForwarder;

namespace navora {

class MacMainWindow final : public MainWindow {
 public:
  MacMainWindow(const MainWindowDescription& description, MainWindowDelegate& delegate);
  ~MacMainWindow() override;
  MacMainWindow(const MacMainWindow&) = delete;
  MacMainWindow& operator=(const MacMainWindow&) = delete;

  void setTitle(const std::string& title) override;
  void setContentView(std::shared_ptr<WebView> webView) override;
  void makeContentViewFirstResponder() override;
  void setAppearance(WindowAppearance appearance) override;
  bool isMiniaturized() const override;
  void deminiaturize() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;

  NSWindow* nsWindow() const { return window_; }
  // Keeps the keyboard from the page while an overlay covers it: the window itself becomes the
  // first responder, so that Return presses the overlay's default button. The page gets the
  // keyboard back with the last overlay.
  void coverContent();
  void uncoverContent();
  // Adds `view` above the other subviews of the content view and pins it to all four edges.
  void addFilling(NSView* view);

 private:
  NSWindow* window_;
  NavoraWindowForwarder* forwarder_;
  std::shared_ptr<WebView> webView_;
  int covers_ = 0;
};

}  // namespace navora
