#pragma once

#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/messagedialog.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>

#include "platform/Dialogs.h"

namespace navora {

// An alert on the screen. Deletes itself once it has been answered.
class AlertDialog {
 public:
  // Shows an alert transient for `parent`, which may be null; calls `completion` once, later.
  static void run(Gtk::Window* parent, const AlertDescription& alert,
                  Dialogs::AlertCompletion completion);

 private:
  AlertDialog(Gtk::Window* parent, const AlertDescription& alert,
              Dialogs::AlertCompletion completion);

  void addText(const std::string& text);
  void addShortText(const std::string& text);
  void addLongText(const std::string& text);
  void addButtons(const std::vector<std::string>& titles);
  void addTextField(const AlertDescription::TextField& field);
  void answer(int response);

  Gtk::MessageDialog dialog_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Label text_;
  Gtk::TextView longText_;
  Gtk::Entry entry_;
  std::size_t buttonCount_;
  Dialogs::AlertCompletion completion_;
  bool answered_ = false;
};

}  // namespace navora
