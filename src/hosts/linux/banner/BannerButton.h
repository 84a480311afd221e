#pragma once

#include <functional>
#include <optional>
#include <string>

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include "platform/UpdateBannerView.h"

namespace navora {

// One button of the update banner. The mouse presses it without taking the focus from the page.
class BannerButton {
 public:
  // The style class may be null for the look of the theme's buttons.
  BannerButton(const char* styleClass, std::function<void()> pressed);

  void show(const UpdateBannerContent::Button& content);

  Gtk::Button& widget() { return button_; }

 private:
  void rememberTitle();
  void clicked();

  std::function<void()> pressed_;
  Gtk::Button button_;
  Gtk::Label title_;
  // What the button said when the press began that has not ended yet.
  std::optional<std::string> pressedTitle_;
};

}  // namespace navora
