#pragma once

#include <initializer_list>
#include <vector>

#include <gtk/gtk.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// The windows that were hidden together with the application: dialogs of every kind.
class HiddenWindows {
 public:
  // Hides every window that is on the screen but `kept`, which may contain null.
  void hideAllBut(std::initializer_list<GtkWidget*> kept);
  // Shows them again, so far as they have not been destroyed.
  void showAgain();

 private:
  std::vector<GObjectPtr<GtkWidget>> windows_;
};

}  // namespace navora
