// The rest of the desktop in the tour's pictures: another program's window, a panel with an open
// tray menu, and a notification. Runs until it is killed.
//   navora-tour-scenery document
//   navora-tour-scenery tray ICON SIZE ENTRY...      ICON holds SIZE x SIZE pixels, RGBA
//   navora-tour-scenery notification ICON SIZE SUMMARY BODY
// An empty ENTRY is a separator. Each window prints "shown" when it is on the screen.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <gtkmm.h>

namespace {

constexpr int panelHeight = 34;
constexpr int margin = 12;

constexpr const char* letter =
    "Dear Ann,\n\n"
    "thank you for the photographs. The one of the harbour in the morning now hangs above my desk, "
    "and everybody who comes in asks where it was taken.\n\n"
    "We arrive on Friday with the evening train. If the weather holds, we could walk along the "
    "cliffs on Saturday and have lunch at the old lighthouse; I have asked, and they are open "
    "until the end of the month.\n\n"
    "Do you still need the coffee that you could not find? ";

constexpr const char* style = R"(
  .document textview, .document text { font: 12pt "DejaVu Serif"; }
  .panel { background: #e9ebee; color: #20242a; }
  .tray-menu, .bubble { background: #ffffff; color: #20242a; border: 1px solid #b9bec6; }
  .tray-menu label { padding: 7px 22px 7px 14px; }
  .summary { font-weight: bold; }
)";

Glib::RefPtr<Gdk::Pixbuf> readIcon(const std::string& path, int size) {
  static const std::string pixels = Glib::file_get_contents(path);
  return Gdk::Pixbuf::create_from_data(reinterpret_cast<const guint8*>(pixels.data()),
                                       Gdk::COLORSPACE_RGB, true, 8, size, size, size * 4);
}

void addClass(Gtk::Widget& widget, const std::string& name) {
  widget.get_style_context()->add_class(name);
}

// The windows of one picture; the widgets in them are managed by their containers.
class Scenery {
 public:
  void showDocument() {
    auto& window = add(Gtk::WINDOW_TOPLEVEL);
    window.set_title("Letter to Ann");
    window.set_default_size(1280, 860);
    window.set_position(Gtk::WIN_POS_CENTER_ALWAYS);
    addClass(window, "document");
    auto& text = *Gtk::make_managed<Gtk::TextView>();
    text.get_buffer()->set_text(letter);
    text.set_wrap_mode(Gtk::WRAP_WORD);
    text.set_left_margin(90);
    text.set_right_margin(90);
    text.set_top_margin(70);
    text.set_pixels_inside_wrap(5);
    window.add(text);
    window.show_all();
  }

  void showTray(const Glib::RefPtr<Gdk::Pixbuf>& icon, const std::vector<std::string>& entries) {
    const Gdk::Rectangle screen = screenArea();
    auto& panel = add(Gtk::WINDOW_POPUP);
    addClass(panel, "panel");
    panel.set_size_request(screen.get_width(), panelHeight);
    auto& bar = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, margin);
    bar.pack_end(*Gtk::make_managed<Gtk::Label>("Sat 14:32"), Gtk::PACK_SHRINK, margin);
    bar.pack_end(*Gtk::make_managed<Gtk::Image>(icon), Gtk::PACK_SHRINK);
    panel.add(bar);
    panel.move(0, 0);
    panel.show_all();

    auto& menu = add(Gtk::WINDOW_POPUP);
    addClass(menu, "tray-menu");
    auto& list = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_VERTICAL);
    list.property_margin() = 5;
    for (const std::string& entry : entries) {
      if (entry.empty()) {
        list.pack_start(*Gtk::make_managed<Gtk::Separator>());
        continue;
      }
      auto& label = *Gtk::make_managed<Gtk::Label>(entry, Gtk::ALIGN_START);
      label.set_use_underline();
      list.pack_start(label);
    }
    menu.add(list);
    showAtRight(menu, screen, panelHeight);
  }

  void showNotification(const Glib::RefPtr<Gdk::Pixbuf>& icon, const std::string& summary,
                        const std::string& body) {
    auto& bubble = add(Gtk::WINDOW_POPUP);
    addClass(bubble, "bubble");
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, margin);
    row.property_margin() = margin;
    auto& image = *Gtk::make_managed<Gtk::Image>(icon);
    image.set_valign(Gtk::ALIGN_START);
    row.pack_start(image, Gtk::PACK_SHRINK);
    auto& texts = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_VERTICAL, 4);
    auto& heading = *Gtk::make_managed<Gtk::Label>(summary, Gtk::ALIGN_START);
    addClass(heading, "summary");
    texts.pack_start(heading, Gtk::PACK_SHRINK);
    auto& content = *Gtk::make_managed<Gtk::Label>("", Gtk::ALIGN_START);
    content.set_markup(body);
    content.set_line_wrap();
    content.set_width_chars(36);
    content.set_max_width_chars(36);
    content.set_xalign(0);
    texts.pack_start(content, Gtk::PACK_SHRINK);
    row.pack_start(texts);
    bubble.add(row);
    showAtRight(bubble, screenArea(), margin);
  }

 private:
  static Gdk::Rectangle screenArea() {
    Gdk::Rectangle area;
    Gdk::Display::get_default()->get_monitor(0)->get_geometry(area);
    return area;
  }

  Gtk::Window& add(Gtk::WindowType type) {
    windows_.push_back(std::make_unique<Gtk::Window>(type));
    Gtk::Window& window = *windows_.back();
    window.signal_map_event().connect([](GdkEventAny*) {
      std::cout << "shown" << std::endl;
      return false;
    });
    return window;
  }

  static void showAtRight(Gtk::Window& window, const Gdk::Rectangle& screen, int top) {
    window.get_child()->show_all();
    Gtk::Requisition minimum;
    Gtk::Requisition natural;
    window.get_preferred_size(minimum, natural);
    window.move(screen.get_width() - natural.width - margin, top);
    window.show();
  }

  std::vector<std::unique_ptr<Gtk::Window>> windows_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
  const auto application = Gtk::Application::create("", Gio::APPLICATION_NON_UNIQUE);
  Scenery scenery;
  application->signal_startup().connect([&] {
    const auto css = Gtk::CssProvider::create();
    css->load_from_data(style);
    Gtk::StyleContext::add_provider_for_screen(Gdk::Screen::get_default(), css,
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    application->hold();
  });
  application->signal_activate().connect([&] {
    if (words.size() == 1 && words[0] == "document") {
      scenery.showDocument();
    } else if (words.size() >= 4 && words[0] == "tray") {
      scenery.showTray(readIcon(words[1], std::stoi(words[2])), {words.begin() + 3, words.end()});
    } else if (words.size() == 5 && words[0] == "notification") {
      scenery.showNotification(readIcon(words[1], std::stoi(words[2])), words[3], words[4]);
    } else {
      std::cerr << "navora-tour-scenery: unknown arguments" << std::endl;
      application->quit();
    }
  });
  return application->run();
}
