#pragma once

#include <glibmm/extraclassinit.h>
#include <gtkmm/box.h>

namespace navora {

// Gives a widget the CSS node name "popover", so that the theme styles it as a popover. A base
// class, because the name belongs to the GObject class.
class PopoverNode : public Glib::ExtraClassInit {
 protected:
  PopoverNode();
};

// The update banner's background and column of widgets: a rounded rectangle with a hairline border.
// Outside its corners the page below stays visible and receives the clicks.
class BannerCard final : public PopoverNode, public Gtk::Box {
 public:
  BannerCard();

  // Returns whether the focus of the card's window is on the card or one of its descendants.
  bool containsFocus();
  // Moves the focus to the card itself, so that a key pressed by mistake activates no button; Tab
  // moves it on to the first button.
  void holdFocus();
  // Moves the focus to the first button; returns false if no button is focusable.
  bool focusFirstButton();

 protected:
  bool on_draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  void on_size_allocate(Gtk::Allocation& allocation) override;
  bool on_focus(Gtk::DirectionType direction) override;

 private:
  void drawHairline(const Cairo::RefPtr<Cairo::Context>& context);
};

}  // namespace navora
