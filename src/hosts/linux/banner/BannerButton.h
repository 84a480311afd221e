#pragma once

#include <functional>
#include <optional>
#include <string>

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include "platform/UpdateBannerView.h"

namespace navora {

// A button of the update banner. A click does not move the focus to it.
class BannerButton {
 public:
  // `styleClass` may be null, for the theme's plain button.
  BannerButton(const char* styleClass, std::function<void()> pressed);

  void show(const UpdateBannerContent::Button& content);

  Gtk::Button& widget() { return button_; }

 private:
  void rememberTitle();
  void clicked();

  std::function<void()> pressed_;
  Gtk::Button button_;
  Gtk::Label title_;
  // The title when the last press began; nullopt after the click that ended it.
  std::optional<std::string> pressedTitle_;
};

}  // namespace navora
