#pragma once

#include <memory>

#include <gtkmm/aboutdialog.h>

#include "platform/Application.h"

namespace navora {

// Says what the application is, in a window of which there is one at a time.
class AboutDialog {
 public:
  AboutDialog();
  ~AboutDialog();
  AboutDialog(const AboutDialog&) = delete;
  AboutDialog& operator=(const AboutDialog&) = delete;

  // Over the parent, which goes on working; null for none. A panel that is on the screen comes to
  // the front with the new texts.
  void show(Gtk::Window* parent, const AboutPanelOptions& options);

  // Null before the first time.
  Gtk::AboutDialog* native() { return dialog_.get(); }

 private:
  void makeDialog();

  std::unique_ptr<Gtk::AboutDialog> dialog_;
};

}  // namespace navora
