#pragma once

#include <glibmm/extraclassinit.h>
#include <gtkmm/box.h>

namespace navora {

// Makes a widget look like the theme's popovers, whatever it is.
class PopoverNode : public Glib::ExtraClassInit {
 protected:
  PopoverNode();
};

// The plate of the update banner: a column with rounded corners, through which the page is seen and
// clicked, and a hairline around it.
class BannerCard final : public PopoverNode, public Gtk::Box {
 public:
  BannerCard();

  // Whether the focus of the card's window is on it or on something in it.
  bool containsFocus();
  // Takes the focus without giving it to a button: what is pressed by mistake presses nothing. Tab
  // leads on to the first button.
  void holdFocus();
  // Gives the focus to the first button; false when there is none that could have it.
  bool focusFirstButton();

 protected:
  bool on_draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  void on_size_allocate(Gtk::Allocation& allocation) override;
  bool on_focus(Gtk::DirectionType direction) override;

 private:
  void drawHairline(const Cairo::RefPtr<Cairo::Context>& context);
};

}  // namespace navora
