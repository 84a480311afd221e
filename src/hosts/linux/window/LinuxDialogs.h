#pragma once

#include <gtkmm/window.h>

#include "platform/Dialogs.h"

namespace navora {

// Alerts and file choosers of the desktop. They answer later; the page that asks waits by itself.
class LinuxDialogs final : public Dialogs {
 public:
  // The window that alerts belong to from now on; must outlive the dialogs or be replaced by null.
  void setParent(Gtk::Window* parent) { parent_ = parent; }

  void runAlert(const AlertDescription& alert, AlertCompletion completion) override;
  void beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                      OpenPanelCompletion completion) override;
  void beginSavePanel(MainWindow& window, const std::string& suggestedName,
                      SavePanelCompletion completion) override;

 private:
  Gtk::Window* parent_ = nullptr;
};

}  // namespace navora
