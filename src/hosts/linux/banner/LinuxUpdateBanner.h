#pragma once

#include <string>
#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/label.h>
#include <gtkmm/overlay.h>
#include <sigc++/connection.h>

#include "hosts/linux/banner/BannerBar.h"
#include "hosts/linux/banner/BannerButton.h"
#include "hosts/linux/banner/BannerCard.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/UpdateBannerView.h"

namespace navora {

class LinuxMainWindow;

// The update banner as an overlay over the page. It never takes the focus by itself: Tab leads to
// its buttons, and F6 from wherever the focus is and back.
class LinuxUpdateBanner final : public UpdateBannerView {
 public:
  LinuxUpdateBanner();
  ~LinuxUpdateBanner() override;

  void setDelegate(UpdateBannerViewDelegate* delegate) override { delegate_ = delegate; }
  void attach(MainWindow& window) override;
  void setHidden(bool hidden) override;
  bool isHidden() const override;
  void setContent(const UpdateBannerContent& content) override;
  void setProgress(UpdateBannerProgress progress) override;
  void announce(const std::string& text) override;

  BannerCard& card() { return card_; }
  BannerBar& bar() { return bar_; }
  BannerButton& button(UpdateBannerButton which);

 private:
  static void onWindowDestroyed(GtkWidget* window, gpointer self);
  void build();
  void describe();
  void connectWindow();
  void pressed(UpdateBannerButton which);
  bool keyPressed(const GdkEventKey& event);
  bool windowKeyPressed(const GdkEventKey& event);
  void rememberFocus(Gtk::Widget* focus);
  void giveFocusBack();
  void redrawPage();
  bool place(const Gtk::Widget& child, Gdk::Rectangle& place);

  UpdateBannerViewDelegate* delegate_ = nullptr;
  // None before the banner is attached and after the window's end.
  LinuxMainWindow* window_ = nullptr;
  SignalConnection windowEnd_;
  std::vector<sigc::connection> connections_;
  // What had the focus before the banner, for as long as it lives.
  GWeakRef focusOutside_{};
  Glib::RefPtr<Gtk::CssProvider> css_ = Gtk::CssProvider::create();

  BannerCard card_;
  Gtk::Box heading_;
  Gtk::Label title_;
  BannerButton close_;
  Gtk::Label detail_;
  BannerBar bar_;
  Gtk::Box row_;
  BannerButton primary_;
  BannerButton secondary_;
  BannerButton tertiary_;
};

}  // namespace navora
