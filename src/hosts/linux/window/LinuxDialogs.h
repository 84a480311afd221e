#pragma once

#include <gtkmm/window.h>

#include "platform/Dialogs.h"

namespace navora {

// Alerts, and file choosers through the desktop's portal where there is one. Completions are called
// later, once.
class LinuxDialogs final : public Dialogs {
 public:
  // Sets the window that alerts are transient for; it must outlive the dialogs unless it is
  // replaced by null.
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
