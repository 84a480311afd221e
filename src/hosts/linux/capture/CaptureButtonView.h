#pragma once

#include <string>

#include <gtkmm/button.h>
#include <gtkmm/cssprovider.h>

#include "platform/CapturePanelView.h"

namespace navora {

// The round submit button of the capture panel, painted by the core.
class CaptureButtonView {
 public:
  // The delegate must outlive the button.
  explicit CaptureButtonView(CapturePanelDelegate& delegate);

  Gtk::Button& widget() { return button_; }
  void setAccessibilityLabel(const std::string& label);

 private:
  bool draw(const Cairo::RefPtr<Cairo::Context>& context);

  CapturePanelDelegate& delegate_;
  Gtk::Button button_;
};

}  // namespace navora
