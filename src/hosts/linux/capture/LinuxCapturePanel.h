#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtkmm/fixed.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>
#include <gtkmm/windowgroup.h>
#include <sigc++/connection.h>

#include "hosts/linux/capture/CaptureButtonView.h"
#include "hosts/linux/capture/CaptureCardView.h"
#include "hosts/linux/capture/CaptureFocusWatch.h"
#include "hosts/linux/capture/LinuxCaptureEditor.h"
#include "platform/CapturePanelView.h"

namespace navora {

class ColorScheme;

// The quick capture panel: an undecorated utility window kept above the others. It is realized once
// and afterwards only mapped and unmapped, so that it appears within a frame.
class LinuxCapturePanel final : public CapturePanelView {
 public:
  // The delegate and the colour scheme must outlive the panel.
  LinuxCapturePanel(Size contentSize, CapturePanelDelegate& delegate, ColorScheme& colorScheme);
  ~LinuxCapturePanel() override;
  LinuxCapturePanel(const LinuxCapturePanel&) = delete;
  LinuxCapturePanel& operator=(const LinuxCapturePanel&) = delete;

  Gtk::Window& native() { return window_; }
  Gtk::Label& message() { return message_; }
  Gtk::Button& submitButton() { return button_.widget(); }
  Gtk::TextView& textView() { return editor_.textView(); }

  CaptureEditorView& editor() override { return editor_; }
  void setTitle(const std::string& title) override;
  void setAppearance(WindowAppearance appearance) override;
  bool systemIsDark() const override;
  bool isVisible() const override { return window_.get_visible(); }
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
  void makeFloating();
  void setUpMessage();
  void useAlphaVisual();
  void connectEvents();
  bool keyPressed(const GdkEventKey& event);
  bool buttonPressed(const GdkEventButton& event);
  void configured(const GdkEventConfigure& event);
  void moveToFrame();
  std::optional<Rectangle> findScreenVisibleFrame() const;
  void placeChildren();
  Size size() const;

  CapturePanelDelegate& delegate_;
  ColorScheme& colorScheme_;
  // In GDK's coordinates: the requested frame, at the position the user has dragged it to.
  GdkRectangle frame_{};
  // The result of screenVisibleFrame(), which asks the X server; nullopt after the panel or a
  // monitor changed.
  mutable std::optional<std::optional<Rectangle>> visibleFrame_;
  CapturePanelLayout layout_;
  // Since the panel was last shown or moved by setFrame().
  bool movedByUser_ = false;
  Gtk::Window window_;
  Glib::RefPtr<Gtk::WindowGroup> group_ = Gtk::WindowGroup::create();
  CaptureCardView card_;
  Gtk::Fixed content_;
  LinuxCaptureEditor editor_;
  // Clips the message, which a GTK window would grow to show as a whole.
  Gtk::ScrolledWindow messageClip_;
  Gtk::Label message_;
  // The result of messageTextHeight() and the width that it is for; nullopt after the message
  // changed.
  double messageHeight_ = 0;
  std::optional<double> messageHeightWidth_;
  CaptureButtonView button_;
  CaptureFocusWatch focusWatch_;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
