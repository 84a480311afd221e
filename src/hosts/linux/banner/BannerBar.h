#pragma once

#include <gtkmm/progressbar.h>

#include "platform/UpdateBannerView.h"

namespace navora {

// The bar of the update banner. Its animation runs only while it can be seen.
class BannerBar {
 public:
  BannerBar();
  ~BannerBar();

  BannerBar(const BannerBar&) = delete;
  BannerBar& operator=(const BannerBar&) = delete;

  void show(UpdateBannerProgress progress);
  bool isAnimating() const { return animation_ != 0; }

  Gtk::ProgressBar& widget() { return bar_; }

 private:
  void updateAnimation();
  void beginAnimation();
  void endAnimation();
  void frame(gint64 time);

  Gtk::ProgressBar bar_;
  UpdateBannerProgress progress_;
  // The number that the toolkit has given to the animation, 0 while there is none.
  guint animation_ = 0;
  gint64 lastPulse_ = 0;
};

}  // namespace navora
