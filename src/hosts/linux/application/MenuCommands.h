#pragma once

#include <functional>

#include <gtk/gtk.h>

#include "platform/Menu.h"

namespace navora {

// Performs the menu actions on the whole application. Both functions are set; either may destroy
// the menu that calls it.
struct ApplicationCommands {
  std::function<void()> hide;
  std::function<void()> terminate;

  void perform(ApplicationAction action) const;
};

// Applies the action to the focused widget: a page, a text field, a text view or a label. Does
// nothing for other widgets or null, nor for actions that the widget does not support: GTK 3's own
// text widgets have no undo.
void performEditAction(EditAction action, GtkWidget* focus);

}  // namespace navora
