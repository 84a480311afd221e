#pragma once

#include <memory>

#import <AppKit/AppKit.h>

#include "hosts/macos/capture/CapturePanelConstraints.h"
#include "hosts/macos/capture/MacCaptureEditor.h"
#include "platform/CapturePanelView.h"
#include "platform/ObserverToken.h"

@class CapturePanel;
@class CaptureSubmitButton;
@class CaptureSurface;
@class NavoraCapturePanelForwarder;

namespace navora {

class MacCapturePanel final : public CapturePanelView {
 public:
  MacCapturePanel(Size contentSize, CapturePanelDelegate& delegate);
  ~MacCapturePanel() override;
  MacCapturePanel(const MacCapturePanel&) = delete;
  MacCapturePanel& operator=(const MacCapturePanel&) = delete;

  CaptureEditorView& editor() override { return editor_; }

  void setTitle(const std::string& title) override;
  void setAppearance(WindowAppearance appearance) override;
  bool systemIsDark() const override;

  bool isVisible() const override;
  Rectangle frame() const override;
  void setFrame(const Rectangle& frame) override;
  std::optional<Rectangle> screenVisibleFrame() const override;
  void makeKeyAndOrderFront() override;
  void orderFront() override;
  void orderOut() override;

  void setMessage(const std::string& text) override;
  void setMessageColor(Color color) override;
  double messageTextHeight(double width) override;

  void setSubmitEnabled(bool enabled) override;
  void setSubmitOpacity(double opacity) override;
  void setSubmitToolTip(const std::string& text) override;
  void setSubmitAccessibilityLabel(const std::string& label) override;

  void setLayout(const CapturePanelLayout& layout) override;
  void redrawSurface() override;
  void redrawSubmitButton() override;

 private:
  NavoraCapturePanelForwarder* _Nonnull forwarder_;
  NSTextField* _Nonnull message_;
  // The core has classes of these two names.
  ::CaptureSubmitButton* _Nonnull submitButton_;
  ::CaptureSurface* _Nonnull surface_;
  CapturePanel* _Nonnull panel_;
  MacCaptureEditor editor_;
  CapturePanelConstraints constraints_;
  std::unique_ptr<ObserverToken> appearanceObservation_;
};

}  // namespace navora
