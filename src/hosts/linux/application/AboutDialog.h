#pragma once

#include <memory>

#include <gtkmm/aboutdialog.h>

#include "platform/Application.h"

namespace navora {

// The toolkit's About dialog, made on first use and kept: at most one is on the screen.
class AboutDialog {
 public:
  AboutDialog();
  ~AboutDialog();
  AboutDialog(const AboutDialog&) = delete;
  AboutDialog& operator=(const AboutDialog&) = delete;

  // Shows the dialog with these texts, transient for `parent` (which may be null) but not modal. If
  // it is on the screen already, updates it and raises it.
  void show(Gtk::Window* parent, const AboutPanelOptions& options);

  // Returns null before the first show().
  Gtk::AboutDialog* native() { return dialog_.get(); }

 private:
  void makeDialog();

  std::unique_ptr<Gtk::AboutDialog> dialog_;
};

}  // namespace navora
