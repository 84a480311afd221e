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

// The update banner, an overlay over the page. Appearing or changing never moves the focus to it.
// F6 moves the focus to its first button and back to where it was.
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
  void setUpAccessibility();
  void connectWindow();
  void pressed(UpdateBannerButton which);
  bool keyPressed(const GdkEventKey& event);
  bool windowKeyPressed(const GdkEventKey& event);
  void rememberFocus(Gtk::Widget* focus);
  void restoreFocus();
  void redrawPage();
  bool place(const Gtk::Widget& child, Gdk::Rectangle& place);

  UpdateBannerViewDelegate* delegate_ = nullptr;
  // Null before attach() and after the window is destroyed.
  LinuxMainWindow* window_ = nullptr;
  SignalConnection windowDestroyed_;
  std::vector<sigc::connection> connections_;
  // The last focused widget outside the banner.
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
