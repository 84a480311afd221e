#pragma once

#include <memory>
#include <string>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/label.h>

#include "platform/ErrorView.h"

namespace navora {

class LinuxMainWindow;

// A page-sized overlay with the error's texts and two buttons. Return presses the retry button
// wherever the focus is; no key reaches the page below.
class LinuxErrorView final : public ErrorView {
 public:
  // The window must outlive the view.
  LinuxErrorView(LinuxMainWindow& window, const ErrorViewDescription& description);
  ~LinuxErrorView() override;

  void setDetail(const std::string& text) override;
  void setHidden(bool hidden) override;
  bool isHidden() const override;

 private:
  void addLabels(const ErrorViewDescription& description);
  void addButton(Gtk::Button& button, const std::string& title,
                 const std::function<void()>& action);

  LinuxMainWindow& window_;
  // An event box has a GdkWindow, which keeps clicks from the page below and covers it.
  Gtk::EventBox background_;
  Gtk::Box stack_;
  Gtk::Label title_;
  Gtk::Label detail_;
  Gtk::Button retry_;
  Gtk::Button browser_;
};

}  // namespace navora
