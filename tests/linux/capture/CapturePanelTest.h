#pragma once

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/linux/capture/LinuxCapturePanel.h"
#include "hosts/linux/window/ColorScheme.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"
#include "platform/Canvas.h"

namespace navora {

// Records what the panel reports; paints a red card and a green button.
class RecordingPanelDelegate final : public CapturePanelDelegate {
 public:
  bool editorKeyDown(const KeyEvent& event, bool isComposing) override {
    keys.push_back(event);
    composing = isComposing;
    return event.keyCode == swallowedKey;
  }
  bool editorKeyEquivalent(const KeyEvent&, bool) override { return false; }
  void editorTextDidChange() override { ++textChanges; }
  void editorCompositionDidChange() override { ++compositionChanges; }
  void editorDidChangeFocus(bool isFocused) override { focused = isFocused; }
  void panelDidResignKey() override { ++resignations; }
  void submitButtonPressed() override { ++presses; }
  void submitButtonHovered(bool isHovered) override { hovered = isHovered; }
  void paintSurface(Canvas& canvas, Size bounds) override {
    const Color red{1, 0, 0, cardAlpha};
    canvas.fillRoundedRectangle({0, 0, bounds.width, bounds.height}, 20, {{{0, red}, {1, red}}, 0});
  }
  void paintSubmitButton(Canvas& canvas, Size bounds) override {
    canvas.fillOval({0, 0, bounds.width, bounds.height}, {0, 1, 0, 1});
  }
  void systemAppearanceDidChange(bool dark) override { systemAppearances.push_back(dark); }

  std::uint16_t swallowedKey = KeyEvent::escapeKey;
  std::vector<KeyEvent> keys;
  bool composing = false;
  double cardAlpha = 1;
  bool focused = false;
  bool hovered = false;
  int textChanges = 0;
  int compositionChanges = 0;
  int resignations = 0;
  int presses = 0;
  std::vector<bool> systemAppearances;
};

// Makes a capture panel on the test's desktop.
class CapturePanelTest : public testing::Test {
 protected:
  static CaptureEditorStyle style() {
    return {FontFamily::sans, 17, 25, {0, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 1, 1}};
  }

  void SetUp() override {
    panel_ = std::make_unique<LinuxCapturePanel>(Size{600, 165}, delegate_, colorScheme_);
    panel_->editor().setStyle(style());
    panel_->setLayout({.padding = 24, .editorHeight = 58, .messageHeight = 14});
    panel_->setFrame({200, 300, 600, 165});
  }

  testing::AssertionResult open() {
    panel_->makeKeyAndOrderFront();
    panel_->editor().makeFirstResponder();
    return waitUntil([&] { return isReadyForKeys(panel_->native()) && delegate_.focused; });
  }
  testing::AssertionResult waitForText(const std::string& text) {
    return waitUntil([&] { return panel_->editor().text() == text; });
  }
  driver::Rectangle onDisplay() { return infoOf(panel_->native()).content; }
  driver::Screenshot shot() { return display_.screenshot(onDisplay()); }

  driver::Display& display_ = TestDesktop::current().display();
  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  driver::Mouse& mouse_ = TestDesktop::current().mouse();
  ColorScheme colorScheme_;
  RecordingPanelDelegate delegate_;
  std::unique_ptr<LinuxCapturePanel> panel_;
};

}  // namespace navora
