// A text view of the toolkit without anything else, for comparison with the capture panel: of the
// same size, in the same font and with the same line breaks.
#include <gtkmm/application.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>
#include <gtkmm/window.h>

int main(int argumentCount, char** arguments) {
  const auto application =
      Gtk::Application::create(argumentCount, arguments, "example.navora.BareTextView");
  Gtk::TextView view;
  view.set_wrap_mode(Gtk::WRAP_WORD_CHAR);
  const auto style = Gtk::CssProvider::create();
  style->load_from_data("textview { font-size: 17px; }");
  view.get_style_context()->add_provider(style, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  Gtk::ScrolledWindow scroller;
  scroller.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
  scroller.add(view);
  Gtk::Window window;
  window.set_default_size(752, 360);
  window.add(scroller);
  window.show_all();
  return application->run(window);
}
