#include "hosts/linux/capture/CaptureButtonView.h"

#include <gtkmm/stylecontext.h>

#include "hosts/linux/graphics/CairoCanvas.h"

namespace navora {

CaptureButtonView::CaptureButtonView(CapturePanelDelegate& delegate) : delegate_(delegate) {
  const auto css = Gtk::CssProvider::create();
  css->load_from_data("button { min-width: 0; min-height: 0; padding: 0; border-radius: 50%; }");
  button_.get_style_context()->add_provider(css, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  button_.set_can_default(false);
  // A click leaves the keyboard with the editor.
  button_.set_focus_on_click(false);
  button_.signal_clicked().connect([this] { delegate_.submitButtonPressed(); });
  button_.signal_enter_notify_event().connect([this](GdkEventCrossing*) {
    delegate_.submitButtonHovered(true);
    return false;
  });
  button_.signal_leave_notify_event().connect([this](GdkEventCrossing*) {
    delegate_.submitButtonHovered(false);
    return false;
  });
  button_.signal_draw().connect(
      [this](const Cairo::RefPtr<Cairo::Context>& context) { return draw(context); }, false);
  button_.show();
}

void CaptureButtonView::setAccessibilityLabel(const std::string& label) {
  button_.get_accessible()->set_name(label);
}

bool CaptureButtonView::draw(const Cairo::RefPtr<Cairo::Context>& context) {
  const Size bounds{static_cast<double>(button_.get_allocated_width()),
                    static_cast<double>(button_.get_allocated_height())};
  CairoCanvas canvas(context->cobj(), bounds);
  delegate_.paintSubmitButton(canvas, bounds);
  if (button_.has_visible_focus()) {
    button_.get_style_context()->render_focus(context, 2, 2, bounds.width - 4, bounds.height - 4);
  }
  return true;
}

}  // namespace navora
