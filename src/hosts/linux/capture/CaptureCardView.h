#pragma once

#include <gtkmm/window.h>

#include "platform/CapturePanelView.h"

namespace navora {

// The card that is all of the capture panel's window: the core paints it, with transparent corners.
class CaptureCardView {
 public:
  // Both must outlive the card.
  CaptureCardView(Gtk::Window& window, CapturePanelDelegate& delegate)
      : window_(window), delegate_(delegate) {}

  void paint(const Cairo::RefPtr<Cairo::Context>& context, Size size);
  // Without a compositor, what is transparent would show black: cuts the window to the card.
  void shape(Size size);
  // After the card or the compositor has changed.
  void redraw(Size size);

 private:
  Gtk::Window& window_;
  CapturePanelDelegate& delegate_;
};

}  // namespace navora
