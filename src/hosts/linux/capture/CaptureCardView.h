#pragma once

#include <gtkmm/window.h>

#include "platform/CapturePanelView.h"

namespace navora {

// The background of the capture panel's window: a card with transparent corners, painted by the
// core.
class CaptureCardView {
 public:
  // Both arguments must outlive the card.
  CaptureCardView(Gtk::Window& window, CapturePanelDelegate& delegate)
      : window_(window), delegate_(delegate) {}

  // Paints the card over the whole window. The card is drawn once for its size and appearance,
  // because every key repaints the part of it behind the text.
  void paint(const Cairo::RefPtr<Cairo::Context>& context, Size size);
  // Shapes the window to the card's outline where no compositor runs, because transparent pixels
  // would be black there; removes the shape where one does.
  void shape(Size size);
  // Shapes and redraws the window, after the card's appearance or the compositor has changed.
  void redraw(Size size);

 private:
  Cairo::RefPtr<Cairo::Surface> drawnCard(Size size);

  Gtk::Window& window_;
  CapturePanelDelegate& delegate_;
  Cairo::RefPtr<Cairo::Surface> card_;
  Size cardSize_;
  int cardScale_ = 0;
};

}  // namespace navora
