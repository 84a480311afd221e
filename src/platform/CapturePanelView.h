#pragma once

#include <optional>
#include <string>

#include "platform/CaptureEditorView.h"
#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/WindowAppearance.h"

namespace navora {

class Canvas;

// Where the parts of the panel are. `frames` is for hosts without a layout system of their own.
struct CapturePanelLayout {
  static constexpr double buttonSize = 38;
  // The message begins this far right of the editor's edge and keeps this distance to the button.
  static constexpr double messageIndent = 5;
  static constexpr double messageButtonGap = 18;
  // Above and below the text, inside of the editor.
  static constexpr double editorInset = 5;

  double padding = 0;
  double editorHeight = 0;
  double messageHeight = 0;

  struct Frames {
    Rectangle editor;
    // The widest that the message may get.
    Rectangle message;
    Rectangle button;
    bool operator==(const Frames&) const = default;
  };
  // In a panel of this size: the editor at the top, the button in the lower right corner, the
  // message left of it on the same middle line.
  Frames framesIn(Size panel) const;

  bool operator==(const CapturePanelLayout&) const = default;
};

// Nothing of it is called while the panel is being made or destroyed.
class CapturePanelDelegate : public CaptureEditorDelegate {
 public:
  // The user gave the focus to something else. Not called for a panel that was ordered out.
  virtual void panelDidResignKey() = 0;
  virtual void submitButtonPressed() = 0;
  virtual void submitButtonHovered(bool hovered) = 0;
  virtual void paintSurface(Canvas& canvas, Size bounds) = 0;
  virtual void paintSubmitButton(Canvas& canvas, Size bounds) = 0;
  // The desktop switched between light and dark.
  virtual void systemAppearanceDidChange(bool dark) = 0;
};

// The floating panel of the quick capture: no title bar, over all windows of every work space,
// movable by its background. It takes the keyboard focus without activating the application. It is
// made hidden and lives as long as its controller.
class CapturePanelView {
 public:
  static constexpr double messageFontSize = 12;
  static constexpr double maximumMessageHeight = 100;

  virtual ~CapturePanelView() = default;

  virtual CaptureEditorView& editor() = 0;

  virtual void setTitle(const std::string& title) = 0;
  virtual void setAppearance(WindowAppearance appearance) = 0;
  // Whether the desktop as a whole is dark now, whatever the panel's own appearance.
  virtual bool systemIsDark() const = 0;

  virtual bool isVisible() const = 0;
  virtual Rectangle frame() const = 0;
  virtual void setFrame(const Rectangle& frame) = 0;
  // Of the screen that the panel is on; none while it is on none.
  virtual std::optional<Rectangle> screenVisibleFrame() const = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;

  virtual void setMessage(const std::string& text) = 0;
  virtual void setMessageColor(Color color) = 0;
  // The height of the message's text, wrapped at this width.
  virtual double messageTextHeight(double width) = 0;

  virtual void setSubmitEnabled(bool enabled) = 0;
  virtual void setSubmitOpacity(double opacity) = 0;
  virtual void setSubmitToolTip(const std::string& text) = 0;
  virtual void setSubmitAccessibilityLabel(const std::string& label) = 0;

  virtual void setLayout(const CapturePanelLayout& layout) = 0;
  virtual void redrawSurface() = 0;
  virtual void redrawSubmitButton() = 0;
};

}  // namespace navora
