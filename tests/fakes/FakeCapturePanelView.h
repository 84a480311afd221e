#pragma once

#include <optional>
#include <string>

#include "fakes/EventLog.h"
#include "fakes/FakeCaptureEditor.h"
#include "platform/CapturePanelView.h"

namespace navora {

class FakeCapturePanelView final : public CapturePanelView {
 public:
  // The desktop that the panel is shown on.
  struct Desktop {
    bool dark = false;
    std::optional<Rectangle> visibleFrame = Rectangle{0, 0, 1440, 900};
    // The height of a one-line message, and the width at which it wraps to two lines.
    double messageLineHeight = 14;
    double messageLineWidth = 0;
    // The last panel created; null once it is destroyed.
    FakeCapturePanelView* panel = nullptr;
  };

  FakeCapturePanelView(EventLog& log, Desktop& desktop, Size contentSize,
                       CapturePanelDelegate& delegate);
  ~FakeCapturePanelView() override;
  FakeCapturePanelView(const FakeCapturePanelView&) = delete;
  FakeCapturePanelView& operator=(const FakeCapturePanelView&) = delete;

  CapturePanelDelegate& delegate() const { return delegate_; }
  const std::string& title() const { return title_; }
  WindowAppearance appearance() const { return appearance_; }
  const std::string& message() const { return message_; }
  Color messageColor() const { return messageColor_; }
  bool isSubmitEnabled() const { return submitEnabled_; }
  double submitOpacity() const { return submitOpacity_; }
  const std::string& submitToolTip() const { return submitToolTip_; }
  const std::string& submitAccessibilityLabel() const { return submitAccessibilityLabel_; }
  const CapturePanelLayout& layout() const { return layout_; }
  int surfaceRedraws() const { return surfaceRedraws_; }
  int buttonRedraws() const { return buttonRedraws_; }
  // Returns whether the panel has the keyboard focus.
  bool isKey() const { return key_; }

  // Act as the user. A click elsewhere moves the focus first.
  void clickElsewhere();
  void clickInEditor();
  // A fatal error if the button is disabled.
  void clickSubmit();

  FakeCaptureEditor& editor() override { return editor_; }
  void setTitle(const std::string& title) override { title_ = title; }
  void setAppearance(WindowAppearance appearance) override { appearance_ = appearance; }
  bool systemIsDark() const override { return desktop_.dark; }
  bool isVisible() const override { return visible_; }
  Rectangle frame() const override { return frame_; }
  void setFrame(const Rectangle& frame) override;
  std::optional<Rectangle> screenVisibleFrame() const override { return desktop_.visibleFrame; }
  void makeKeyAndOrderFront() override;
  void orderFront() override;
  void orderOut() override;
  void setMessage(const std::string& text) override;
  void setMessageColor(Color color) override { messageColor_ = color; }
  double messageTextHeight(double width) override;
  void setSubmitEnabled(bool enabled) override { submitEnabled_ = enabled; }
  void setSubmitOpacity(double opacity) override { submitOpacity_ = opacity; }
  void setSubmitToolTip(const std::string& text) override { submitToolTip_ = text; }
  void setSubmitAccessibilityLabel(const std::string& label) override {
    submitAccessibilityLabel_ = label;
  }
  void setLayout(const CapturePanelLayout& layout) override { layout_ = layout; }
  void redrawSurface() override { ++surfaceRedraws_; }
  void redrawSubmitButton() override { ++buttonRedraws_; }

 private:
  EventLog& log_;
  Desktop& desktop_;
  CapturePanelDelegate& delegate_;
  FakeCaptureEditor editor_;
  std::string title_;
  WindowAppearance appearance_ = WindowAppearance::system;
  bool visible_ = false;
  bool key_ = false;
  Rectangle frame_;
  std::string message_;
  Color messageColor_{};
  bool submitEnabled_ = true;
  double submitOpacity_ = 1;
  std::string submitToolTip_;
  std::string submitAccessibilityLabel_;
  CapturePanelLayout layout_;
  int surfaceRedraws_ = 0;
  int buttonRedraws_ = 0;
};

}  // namespace navora
