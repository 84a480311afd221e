#pragma once

#include <gtkmm/progressbar.h>
#include <sigc++/connection.h>

#include "platform/UpdateBannerView.h"

namespace navora {

// The bar of the update banner. Its animation runs only while it can be seen.
class LinuxUpdateBannerBar {
 public:
  LinuxUpdateBannerBar();
  ~LinuxUpdateBannerBar();

  LinuxUpdateBannerBar(const LinuxUpdateBannerBar&) = delete;
  LinuxUpdateBannerBar& operator=(const LinuxUpdateBannerBar&) = delete;

  void show(UpdateBannerProgress progress);
  // While its window is minimised.
  void setSuspended(bool suspended);
  bool isAnimating() const { return animation_.connected(); }

  Gtk::ProgressBar& widget() { return bar_; }

 private:
  void updateAnimation();

  Gtk::ProgressBar bar_;
  UpdateBannerProgress progress_;
  bool suspended_ = false;
  sigc::connection animation_;
};

}  // namespace navora
