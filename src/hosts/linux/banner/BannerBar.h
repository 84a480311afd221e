#pragma once

#include <gtkmm/progressbar.h>

#include "platform/UpdateBannerView.h"

namespace navora {

// The progress bar of the update banner. The indeterminate animation runs only while it is mapped.
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
  void startAnimation();
  void stopAnimation();
  // `time` is in microseconds.
  void frameStarted(gint64 time);

  Gtk::ProgressBar bar_;
  UpdateBannerProgress progress_;
  // The id of the tick callback; 0 while not animating.
  guint animation_ = 0;
  gint64 lastPulse_ = 0;
};

}  // namespace navora
