#pragma once

#include <optional>
#include <string>

#include "platform/CaptureEditorView.h"
#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/WindowAppearance.h"

namespace navora {

class Canvas;

// The metrics of the panel's layout, in points. Hosts without a layout system use framesIn().
struct CapturePanelLayout {
  static constexpr double buttonSize = 38;
  // From the editor's left edge to the message, and from the message to the button.
  static constexpr double messageIndent = 5;
  static constexpr double messageButtonGap = 18;
  // Above and below the text, within the editor.
  static constexpr double editorInset = 5;

  double padding = 0;
  double editorHeight = 0;
  double messageHeight = 0;

  struct Frames {
    Rectangle editor;
    // At its maximum width.
    Rectangle message;
    Rectangle button;
    bool operator==(const Frames&) const = default;
  };
  // Computes the frames in a panel of this size: the editor at the top, the button in the lower
  // right corner, the message to its left with the same vertical centre.
  Frames framesIn(Size panel) const;

  bool operator==(const CapturePanelLayout&) const = default;
};

// Receives the panel's events and paints it. Called on the main thread, never while the panel is
// being constructed or destroyed.
class CapturePanelDelegate : public CaptureEditorDelegate {
 public:
  // The panel lost the keyboard focus to another window. Not called after orderOut().
  virtual void panelDidResignKey() = 0;
  virtual void submitButtonPressed() = 0;
  virtual void submitButtonHovered(bool hovered) = 0;
  virtual void paintSurface(Canvas& canvas, Size bounds) = 0;
  virtual void paintSubmitButton(Canvas& canvas, Size bounds) = 0;
  // The desktop switched between light and dark.
  virtual void systemAppearanceDidChange(bool dark) = 0;
};

// The floating capture panel: borderless, above all windows on every workspace, movable by its
// background. It takes the keyboard focus without activating the application. Created hidden; lives
// as long as its controller.
class CapturePanelView {
 public:
  static constexpr double messageFontSize = 12;
  static constexpr double maximumMessageHeight = 100;

  virtual ~CapturePanelView() = default;

  virtual CaptureEditorView& editor() = 0;

  virtual void setTitle(const std::string& title) = 0;
  virtual void setAppearance(WindowAppearance appearance) = 0;
  // Returns whether the desktop currently uses a dark appearance, whatever the panel's own is.
  virtual bool systemIsDark() const = 0;

  virtual bool isVisible() const = 0;
  virtual Rectangle frame() const = 0;
  virtual void setFrame(const Rectangle& frame) = 0;
  // Returns the visible frame of the panel's screen, or nullopt while it is on no screen.
  virtual std::optional<Rectangle> screenVisibleFrame() const = 0;
  virtual void makeKeyAndOrderFront() = 0;
  // Shows the panel above other windows without taking the keyboard focus. The user gives it the
  // focus by clicking in it. A panel that is visible and has the focus keeps it.
  virtual void orderFront() = 0;
  virtual void orderOut() = 0;

  virtual void setMessage(const std::string& text) = 0;
  virtual void setMessageColor(Color color) = 0;
  // Returns the height in points of the message wrapped at `width`.
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
